#include "apps/calljournal/command-line/ServeOptions.h"

#include <utility>

#include <CLI/CLI.hpp>

#include "apps/calljournal/command-line/EndpointOption.h"
#include "host/config/ConfigurationReader.h"
#include "host/config/DataDirectory.h"
#include "host/config/Endpoint.h"
#include "host/log/Log.h"
#include "host/management/SettingRules.h"
#include "platform/logging/Logging.h"

namespace calljournal {
namespace {

std::string checkKeyAndValue(const std::string& text) {
    const std::size_t equals = text.find('=');
    return equals == std::string::npos || equals == 0 ? text + " is not KEY=VALUE" : std::string();
}

/// Throws `ConfigurationError` for an invalid value. Logs a warning for a key that is not read, which may be
/// misspelt.
void check(const host::Configuration::Keys& keys) {
    for (const auto& [key, value] : keys) {
        if (!host::isAccepted(key, value)) {
            std::string text = "--set " + key;
            text += '=' + value;
            text += ": must be ";
            text += host::acceptedValues(key);
            throw host::ConfigurationError(text);
        }
        if (!host::isUsedByJournal(key)) {
            logAppUni("Configuration", __FILE_NAME__, 3, __LINE__,
                      "the setting %s is not used; is it misspelt?", key.c_str());
        }
    }
}

}  // namespace

void configureLog(const host::Configuration::Logging& log) {
    host::Log::configure({.level = log.level,
                          .libraryLevel = log.libraryLevel,
                          .file = log.file,
                          .parties = log.isPrivate ? host::Parties::eShown : host::Parties::eMasked});
}

void ServeOptions::addTo(CLI::App& app, bool withSwitch) {
    m_readsUserFile = withSwitch;
    app.add_option("--config", m_file,
                   withSwitch
                       ? "configuration file (TOML) [~/.config/calljournal/calljournal.toml if it exists]"
                       : "configuration file (TOML)")
        ->type_name("FILE");
    addListenOption(app, "--listen", m_listen,
                    "the address of the page and the API; overrides the file [127.0.0.1:8080]");
    if (withSwitch) {
        addPeerOption(app, "--switch", m_switch,
                      "the address of the switch; overrides the file [127.0.0.1:4242]");
    }
    app.add_option("--set", m_keys, "the value of a management key; overrides the file and the stored value")
        ->type_name("KEY=VALUE")
        ->allow_extra_args(false)
        ->check(checkKeyAndValue);
}

host::Configuration ServeOptions::configure(const std::string& logLevel,
                                            host::Configuration configuration) const {
    configuration = load(logLevel, std::move(configuration));
    configureLog(configuration.log);
    check(configuration.management);
    check(configuration.managementOverrides);
    return configuration;
}

std::filesystem::path ServeOptions::file() const {
    return m_file.empty() && m_readsUserFile ? host::userConfigurationFile() : std::filesystem::path(m_file);
}

host::Configuration ServeOptions::load(const std::string& logLevel, host::Configuration configuration) const {
    configuration.log.level = logLevel;
    if (const std::filesystem::path named = file(); !named.empty()) {
        configuration = host::loadConfiguration(named, std::move(configuration));
    }
    if (!m_listen.empty()) {
        configuration.api.listen = host::parseEndpoint(m_listen).value();
    }
    if (!m_switch.empty()) {
        const host::Endpoint endpoint = host::parseEndpoint(m_switch).value();
        configuration.callSwitch.host = endpoint.host;
        configuration.callSwitch.port = endpoint.port;
    }
    for (const std::string& each : m_keys) {
        configuration.set(each);
    }
    return configuration;
}

}  // namespace calljournal
