#include "host/config/TomlSection.h"

#include <algorithm>
#include <utility>

#include "host/config/ConfigurationError.h"

namespace host {

toml::table parseToml(std::string_view toml, const std::string& fileName) {
    try {
        return toml::parse(toml, fileName);
    } catch (const toml::parse_error& error) {
        throw ConfigurationError(fileName + ':' + std::to_string(error.source().begin.line) + ": " +
                                 std::string(error.description()));
    }
}

TomlSection::TomlSection(const toml::table& table, std::string path, std::string fileName)
    : m_table(table), m_path(std::move(path)), m_fileName(std::move(fileName)) {}

const toml::node* TomlSection::take(const char* key) {
    m_readKeys.emplace(key);
    return m_table.get(key);
}

void TomlSection::read(const char* key, std::string& value) {
    const toml::node* const node = take(key);
    if (node == nullptr) {
        return;
    }
    if (!node->is_string()) {
        refuse(key, "must be a text in quotation marks");
    }
    value = node->as_string()->get();
}

void TomlSection::read(const char* key, bool& value) {
    const toml::node* const node = take(key);
    if (node == nullptr) {
        return;
    }
    if (!node->is_boolean()) {
        refuse(key, "must be true or false");
    }
    value = node->as_boolean()->get();
}

void TomlSection::read(const char* key, std::vector<std::string>& value) {
    const toml::node* const node = take(key);
    if (node == nullptr) {
        return;
    }
    if (!node->is_array()) {
        refuse(key, "must be a list of texts in brackets");
    }
    std::vector<std::string> read;
    for (const toml::node& element : *node->as_array()) {
        if (!element.is_string()) {
            refuseAt(element.source().begin.line, key, "must be a list of texts, each in quotation marks");
        }
        read.push_back(element.as_string()->get());
    }
    value = std::move(read);
}

void TomlSection::read(const char* key, std::int64_t& value, std::int64_t least, std::int64_t most) {
    const toml::node* const node = take(key);
    if (node == nullptr) {
        return;
    }
    if (!node->is_integer() || node->as_integer()->get() < least || node->as_integer()->get() > most) {
        refuse(key, "must be a whole number from " + std::to_string(least) + " to " + std::to_string(most));
    }
    value = node->as_integer()->get();
}

void TomlSection::readName(const char* key, std::string& value) {
    read(key, value);
    if (value.empty()) {
        refuse(key, "must not be empty");
    }
}

void TomlSection::readWord(const char* key, std::string& value,
                           std::initializer_list<std::string_view> words) {
    read(key, value);
    if (std::find(words.begin(), words.end(), value) == words.end()) {
        std::string choice;
        for (const std::string_view word : words) {
            choice += (choice.empty() ? "\"" : ", \"") + std::string(word) + '"';
        }
        refuse(key, (words.size() == 1 ? "must be " : "must be one of ") + choice);
    }
}

std::optional<TomlSection> TomlSection::section(const char* key) {
    const toml::node* const node = take(key);
    if (node == nullptr) {
        return std::nullopt;
    }
    if (!node->is_table()) {
        refuse(key, "must be a section, written once as [" + nameOf(key) + "]");
    }
    return TomlSection(*node->as_table(), nameOf(key), m_fileName);
}

std::vector<TomlSection> TomlSection::sections(const char* key) {
    std::vector<TomlSection> found;
    const toml::node* const node = take(key);
    if (node == nullptr) {
        return found;
    }
    if (node->is_table()) {
        found.emplace_back(*node->as_table(), nameOf(key), m_fileName);
    } else if (node->is_array_of_tables()) {
        for (const toml::node& element : *node->as_array()) {
            found.emplace_back(*element.as_table(), nameOf(key), m_fileName);
        }
    } else {
        refuse(key, "must be a section, written as [" + nameOf(key) + "] or [[" + nameOf(key) + "]]");
    }
    return found;
}

std::vector<std::string> TomlSection::takeAllKeys() {
    std::vector<std::string> keys;
    for (const auto& [key, node] : m_table) {
        keys.emplace_back(key.str());
        m_readKeys.emplace(key.str());
    }
    return keys;
}

void TomlSection::finish() const {
    for (const auto& [key, node] : m_table) {
        if (m_readKeys.find(key.str()) == m_readKeys.end()) {
            std::string valid;
            for (const std::string& name : m_readKeys) {
                valid += (valid.empty() ? "" : ", ") + name;
            }
            refuseAt(key.source().begin.line, key.str(), "is not a valid key; valid keys: " + valid);
        }
    }
}

void TomlSection::refuse(std::string_view key, const std::string& what) const {
    const toml::node* const node = key.empty() ? nullptr : m_table.get(key);
    refuseAt((node == nullptr ? static_cast<const toml::node&>(m_table) : *node).source().begin.line, key,
             what);
}

std::string TomlSection::nameOf(std::string_view key) const {
    return m_path.empty() || key.empty() ? m_path + std::string(key) : m_path + '.' + std::string(key);
}

void TomlSection::refuseAt(std::uint32_t line, std::string_view key, const std::string& what) const {
    throw ConfigurationError(m_fileName + ':' + std::to_string(line) + ": " + nameOf(key) + ": " + what);
}

}  // namespace host
