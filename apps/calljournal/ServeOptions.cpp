#include "apps/calljournal/ServeOptions.h"

#include <CLI/CLI.hpp>

#include "apps/calljournal/EndpointOption.h"
#include "host/config/Endpoint.h"
#include "host/log/Log.h"
#include "platform/logging/Logging.h"
#include "platform/texts/SoftwareTypes.h"

namespace host {
namespace {

std::string checkKeyAndValue(const std::string& text) {
    const std::size_t equals = text.find('=');
    return equals == std::string::npos || equals == 0 ? text + " is not KEY=VALUE" : std::string();
}

// A SIP phone's line is monitored when the switch reports its devices, which the link does not ask for.
void warnOfUnmonitoredLine(const Configuration& configuration) {
    const std::string key = "software-type";
    const auto set = configuration.managementOverrides.find(key);
    const auto first = configuration.management.find(key);
    const bool sip = set != configuration.managementOverrides.end()
                         ? set->second == softwareTypes::sip
                         : first != configuration.management.end() && first->second == softwareTypes::sip;
    if (sip) {
        logAppUni("Calljournal", "ServeOptions.cpp", 3, __LINE__,
                  "software-type is %s: the line's devices are not known, so no calls will be heard of",
                  softwareTypes::sip);
    }
}

}  // namespace

void ServeOptions::addTo(CLI::App& app, bool withSwitch) {
    app.add_option("--config", m_file, "configuration file (TOML)")->type_name("FILE");
    addEndpointOption(app, "--listen", m_listen, "address of the HTTP face to come, instead of the file's");
    if (withSwitch) {
        addEndpointOption(app, "--switch", m_switch, "the switch, instead of the file's [127.0.0.1:4242]");
    }
    app.add_option("--set", m_keys, "a management key's value, instead of the file's and the stored one")
        ->type_name("KEY=VALUE")
        ->allow_extra_args(false)
        ->check(checkKeyAndValue);
}

Configuration ServeOptions::configure(const std::string& logLevel) const {
    Configuration configuration;
    configuration.log.level = logLevel;
    if (!m_file.empty()) {
        configuration = Configuration::load(m_file);
    }
    if (!m_listen.empty()) {
        configuration.api.listen = parseEndpoint(m_listen).value();
    }
    if (!m_switch.empty()) {
        const Endpoint endpoint = parseEndpoint(m_switch).value();
        configuration.callSwitch.host = endpoint.host;
        configuration.callSwitch.port = endpoint.port;
    }
    for (const std::string& each : m_keys) {
        configuration.set(each);
    }
    Log::configure(configuration.log.level, configuration.log.file);
    warnOfUnmonitoredLine(configuration);
    return configuration;
}

}  // namespace host
