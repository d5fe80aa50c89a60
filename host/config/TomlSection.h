#pragma once

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include <toml++/toml.h>

namespace host {

/// Parses a TOML text. `fileName` appears in messages. Throws `ConfigurationError` with file and line.
[[nodiscard]] toml::table parseToml(std::string_view toml, const std::string& fileName);

/// A checked section of a TOML file. The configuration reader reads every key that is valid; `finish` refuses
/// any other key. If a key is absent, the passed value, its default, is unchanged.
///
/// Errors: a `ConfigurationError` with the file, the text line and the key's full name.
/// Not thread-safe. Requires: the table outlives the section.
class TomlSection {
public:
    /// `path` is the section's name, empty for the file as a whole.
    TomlSection(const toml::table& table, std::string path, std::string fileName);

    void read(const char* key, std::string& value);
    void read(const char* key, bool& value);
    void read(const char* key, std::vector<std::string>& value);
    /// Reads an integer from `least` to `most`.
    void read(const char* key, std::int64_t& value, std::int64_t least, std::int64_t most);
    /// Reads a text that is not empty.
    void readName(const char* key, std::string& value);
    /// Reads one of the given words.
    void readWord(const char* key, std::string& value, std::initializer_list<std::string_view> words);

    /// True if the file has the key.
    [[nodiscard]] bool has(const char* key) const { return m_table.contains(key); }
    /// Returns the section `[key]`, or std::nullopt if the key is absent.
    [[nodiscard]] std::optional<TomlSection> section(const char* key);
    /// Returns the section `[key]`, or the sections `[[key]]` in their order. Returns no section if the key
    /// is absent.
    [[nodiscard]] std::vector<TomlSection> sections(const char* key);

    /// Returns all keys, for a section in which any key is valid.
    [[nodiscard]] std::vector<std::string> takeAllKeys();

    /// Refuses the first key that was not read.
    void finish() const;

    /// Refuses the key's value ("must be ..."), or the section itself if the key is absent or empty.
    [[noreturn]] void refuse(std::string_view key, const std::string& what) const;

private:
    const toml::node* take(const char* key);
    [[nodiscard]] std::string nameOf(std::string_view key) const;
    [[noreturn]] void refuseAt(std::uint32_t line, std::string_view key, const std::string& what) const;

    const toml::table& m_table;
    const std::string m_path;
    const std::string m_fileName;
    std::set<std::string, std::less<>> m_readKeys;
};

}  // namespace host
