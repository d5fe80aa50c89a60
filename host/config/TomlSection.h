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

/// One section of a TOML file under examination. Its reader names every key that the section may have; `finish` refuses
/// what nobody named. A key that is absent leaves the value that was passed in, its default, as it is.
///
/// Every refusal is a `ConfigurationError` with file, line and the key's full name. Only the configuration's reader uses
/// this class; the table outlives it.
class TomlSection {
public:
    /// `path` is the section's name, empty for the file as a whole.
    TomlSection(const toml::table& table, std::string path, std::string fileName);

    void read(const char* key, std::string& value);
    void read(const char* key, bool& value);
    void read(const char* key, std::vector<std::string>& value);
    /// A whole number within the bounds.
    void read(const char* key, std::int64_t& value, std::int64_t least, std::int64_t most);
    /// A text that is not empty.
    void readName(const char* key, std::string& value);
    /// One of the given words.
    void readWord(const char* key, std::string& value, std::initializer_list<std::string_view> words);

    [[nodiscard]] std::optional<TomlSection> section(const char* key);
    /// The section `[key]`, or the sections `[[key]]` in their order; none when the key is absent.
    [[nodiscard]] std::vector<TomlSection> sections(const char* key);

    /// All keys, for a section whose keys are free; they count as named.
    [[nodiscard]] std::vector<std::string> takeAllKeys();

    /// Refuses the first key that was not named.
    void finish() const;

    /// Refuses the key's value ("must be ..."); a key that is absent, or an empty one, stands for the section itself.
    [[noreturn]] void refuse(std::string_view key, const std::string& what) const;

private:
    const toml::node* take(const char* key);
    [[nodiscard]] std::string nameOf(std::string_view key) const;
    [[noreturn]] void refuseAt(std::uint32_t line, std::string_view key, const std::string& what) const;

    const toml::table& m_table;
    const std::string m_path;
    const std::string m_fileName;
    std::set<std::string, std::less<>> m_named;
};

}  // namespace host
