#include "host/config/Configuration.h"

#include <cerrno>
#include <fstream>
#include <iterator>
#include <system_error>

#include "host/config/ConfigurationReader.h"

namespace host {

Configuration Configuration::parse(std::string_view toml, const std::string& fileName) {
    return readConfiguration(toml, fileName);
}

Configuration Configuration::load(const std::filesystem::path& file) {
    std::error_code error;
    if (std::filesystem::is_directory(file, error)) {
        throw ConfigurationError(file.string() + ": is a directory, not a configuration file");
    }
    errno = 0;
    std::ifstream stream(file, std::ios::binary);
    const std::string toml{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    if (!stream) {
        throw ConfigurationError(file.string() +
                                 ": cannot be read: " + std::generic_category().message(errno));
    }
    return parse(toml, file.string());
}

void Configuration::set(std::string_view keyAndValue) {
    const std::size_t equals = keyAndValue.find('=');
    const std::string key(keyAndValue.substr(0, equals));
    if (equals == std::string_view::npos || key.empty() || key.find_first_of(" \t\n") != std::string::npos) {
        throw ConfigurationError("--set " + std::string(keyAndValue) +
                                 ": must be KEY=VALUE, such as system-identifier=2");
    }
    managementOverrides.insert_or_assign(key, std::string(keyAndValue.substr(equals + 1)));
}

}  // namespace host
