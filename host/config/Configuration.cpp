#include "host/config/Configuration.h"

#include "host/config/ConfigurationError.h"

namespace host {

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
