#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "fuzz/support/Property.h"
#include "host/config/Configuration.h"
#include "host/config/ConfigurationError.h"
#include "host/config/ConfigurationReader.h"

// Feeds any bytes to the reader of the configuration file. Each text line is also given to `--set`.

namespace {

using fuzz::require;

std::optional<host::Configuration> read(const std::string& toml) {
    try {
        return host::readConfiguration(toml, "c.toml");
    } catch (const host::ConfigurationError& error) {
        const std::string message = error.what();
        require(message.starts_with("c.toml"), "the message of a refused file does not name it");
        return std::nullopt;
    }
}

void checkValues(const host::Configuration& read) {
    require(!read.lines.empty(), "a configuration has no line");
    for (const host::Configuration::Line& line : read.lines) {
        require(!line.device.empty(), "a line has no device");
    }
    require(read.callSwitch.port != 0, "the port of the switch is 0");
    require(read.callSwitch.reconnectMax.count() >= 1 && read.callSwitch.reconnectMax.count() <= 3600,
            "the time between two attempts is out of bounds");
    require(read.callSwitch.callMax.count() >= 1 && read.callSwitch.callMax.count() <= 8760,
            "the longest call is out of bounds");
    require(read.data.keep.count() >= 0 && read.data.keep.count() <= 36500,
            "the time to keep is out of bounds");
    require(read.callSwitch.tls || read.callSwitch.trust == host::ServerTrust(),
            "keys of TLS are accepted for a link that is not encrypted");
    require(read.api.tls.certificate.empty() == read.api.tls.key.empty(), "a certificate has no key");
    require(read.digits.region.size() == 2, "the region has no two letters");
}

void checkOverride(const std::string& line) {
    host::Configuration configuration;
    try {
        configuration.set(line);
        const auto& [key, value] = *configuration.managementOverrides.begin();
        require(key + "=" + value == line, "an override is not the key and the value that were given");
    } catch (const host::ConfigurationError&) {
        require(configuration.managementOverrides.empty(), "an override that is refused has an effect");
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string toml(reinterpret_cast<const char*>(data), size);
    if (const auto configuration = read(toml)) {
        checkValues(*configuration);
        const auto again = read(toml + "\n# the end");
        require(again && *again == *configuration, "a comment changes the configuration");
    }
    for (std::size_t begin = 0; begin < toml.size();) {
        const std::size_t end = std::min(toml.find('\n', begin), toml.size());
        checkOverride(toml.substr(begin, end - begin));
        begin = end + 1;
    }
    return 0;
}
