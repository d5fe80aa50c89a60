#include "apps/calljournal/server/ServerSettings.h"

#include <algorithm>
#include <memory>
#include <string>
#include <utility>

#include "host/framework/LibraryLoader.h"
#include "host/http/ApiToken.h"
#include "host/tls/CertificateWarning.h"
#include "host/tls/Certificates.h"
#include "host/tls/ClientContext.h"
#include "host/tls/ServerCertificate.h"
#include "host/webhooks/Signature.h"

namespace calljournal {
namespace {

/// Relative to the program's directory.
constexpr const char* kPageDirectory = "../share/calljournal/web";

host::ServedLines::Switch switchSettings(const host::Configuration::Switch& callSwitch) {
    host::SwitchLinkConfig link;
    link.host = callSwitch.host;
    link.port = callSwitch.port;
    if (callSwitch.tls) {
        link.tls = callSwitch.trust;
        // The link reads the files for each connection; what is wrong with them ends the start.
        static_cast<void>(host::clientContext(*link.tls));
        if (const host::CertificateFiles& own = link.tls->own; !own.certificate.empty()) {
            host::warnOfCertificate(own, host::factsOfCertificate(own.certificate), "the switch refuses it");
        }
    }
    link.edition = callSwitch.edition;
    link.session = callSwitch.session;
    link.reconnectMax = callSwitch.reconnectMax;
    return {.name = callSwitch.name, .link = std::move(link)};
}

const host::Configuration::Switch& switchOf(const host::Configuration& configuration,
                                            const std::string& name) {
    const auto& more = configuration.moreSwitches;
    const auto found =
        std::find_if(more.begin(), more.end(),
                     [&name](const host::Configuration::Switch& each) { return each.name == name; });
    return name.empty() || found == more.end() ? configuration.callSwitch : *found;
}

host::LineSettings lineSettings(const host::Configuration& configuration,
                                const host::Configuration::Line& line) {
    const host::Configuration::Switch& callSwitch = switchOf(configuration, line.switchName);
    host::LineSettings settings;
    settings.link.ownDevice = line.device;
    settings.link.edition = callSwitch.edition;
    settings.link.session = callSwitch.session;
    settings.link.sendFilters = callSwitch.sendFilters;
    settings.link.callMaxAge = callSwitch.callMax;
    settings.link.bluetooth = line.bluetooth;
    settings.managementFirst = line.management;
    settings.managementFirst.insert(configuration.management.begin(), configuration.management.end());
    settings.managementOverrides = configuration.managementOverrides;
    settings.region = configuration.digits.region;
    settings.featureAccessCodes = configuration.digits.featureAccessCodes;
    settings.outsideLine = configuration.digits.outsideLine;
    settings.dialForm =
        configuration.digits.dialInternational ? host::DialForm::eInternational : host::DialForm::eNational;
    settings.neverLog = line.neverLog;
    for (const host::Configuration::SharedDevice& shared : line.shared) {
        settings.link.sharedDevices.push_back(shared.device);
        if (shared.logMissedCalls) {
            settings.loggedSharedDevices.insert(shared.device);
        }
    }
    return settings;
}

host::ServedLines::Configured configuredLine(const host::Configuration& configuration,
                                             const host::Configuration::Line& line, bool isConfigured) {
    return {.description = {.device = line.device,
                            .name = line.name,
                            .switchName = line.switchName,
                            .isConfigured = isConfigured,
                            .keep = line.keep.value_or(configuration.data.keep)},
            .settings = lineSettings(configuration, line)};
}

}  // namespace

host::ServedLines::Settings linesSettings(const host::Configuration& configuration) {
    host::ServedLines::Settings settings;
    settings.switches.push_back(switchSettings(configuration.callSwitch));
    for (const host::Configuration::Switch& each : configuration.moreSwitches) {
        settings.switches.push_back(switchSettings(each));
    }
    // The lists of one line are always ready.
    const bool hasMany = configuration.lines.size() > 1;
    for (const host::Configuration::Line& each : configuration.lines) {
        settings.lines.push_back(configuredLine(configuration, each, true));
        settings.lines.back().settings.loadsListsAtFirstNeed = hasMany;
    }
    // An added line has the settings of all lines, not those of another one.
    settings.added = [configuration](const std::string& device, const std::string& name,
                                     const std::string& switchName) {
        host::Configuration::Line line;
        line.device = device;
        line.name = name;
        line.switchName = switchName;
        host::ServedLines::Configured added = configuredLine(configuration, line, false);
        added.settings.loadsListsAtFirstNeed = true;
        return added;
    };
    return settings;
}

host::HttpApiSettings httpSettings(const host::Configuration& configuration,
                                   const std::filesystem::path& tokenFile) {
    host::HttpApiSettings settings;
    settings.server.listen = configuration.api.listen;
    if (!configuration.api.tls.certificate.empty()) {
        settings.server.certificate = std::make_shared<host::ServerCertificate>(configuration.api.tls);
    }
    settings.publicUrl = configuration.api.publicUrl;
    const std::string name = settings.server.certificate ? settings.server.certificate->hostName() : "";
    if (settings.publicUrl.empty() && !name.empty()) {
        settings.publicUrl = "https://" + host::Endpoint{name, settings.server.listen.port}.text() + "/";
    }
    settings.allowedOrigins = configuration.api.allowedOrigins;
    if (configuration.api.auth == host::Configuration::Auth::eToken) {
        settings.token = host::apiToken(tokenFile);
    }
    settings.page = host::LibraryLoader::programDirectory() / kPageDirectory;
    return settings;
}

std::vector<host::WebhookSettings> webhookSettings(const host::Configuration& configuration) {
    std::vector<host::WebhookSettings> webhooks;
    for (const host::Configuration::Webhook& each : configuration.webhooks) {
        if (!each.authorities.empty()) {
            // libcurl reads the file for each connection; what is wrong with it ends the start.
            host::requirePeerOf(*host::tlsContext(asio::ssl::context::tls_client), each.authorities);
        }
        webhooks.push_back({each.url, each.events, host::readSecret(each.secretFile), each.authorities});
    }
    return webhooks;
}

std::set<host::JournalEventKind> webhookEvents(const host::Configuration& configuration) {
    std::set<host::JournalEventKind> wanted;
    for (const host::Configuration::Webhook& each : configuration.webhooks) {
        wanted.insert(each.events.begin(), each.events.end());
    }
    return wanted;
}

}  // namespace calljournal
