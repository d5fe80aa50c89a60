#include "apps/calljournal/diagnosis/NetworkChecks.h"

#include <asio/io_context.hpp>
#include <chrono>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>

#include "host/api-client/ApiClient.h"
#include "host/config/Endpoint.h"
#include "host/csta/association/SwitchConnection.h"
#include "host/remote/RemoteError.h"

namespace calljournal {
namespace {

using Level = Finding::Level;
using Json = nlohmann::ordered_json;

constexpr std::chrono::seconds kPatience{12};
constexpr std::chrono::hours kNever{1};

std::optional<Json> statusOf(const CommonOptions& common, Findings& findings) {
    try {
        host::ApiClient client(common.server());
        Json status = client.get({"status"});
        findings.push_back({Level::eGood, "server", "runs, for line " + status.value("line", "")});
        return status;
    } catch (const host::ApiError& error) {
        findings.push_back({Level::eFailed, "server", error.what()});
    } catch (const host::RemoteError&) {
        findings.push_back({Level::eGood, "server", "none runs with this data directory"});
    }
    return std::nullopt;
}

Finding findingOf(const Json& status) {
    const Json& link = status.at("switch");
    if (!link.value("connected", false)) {
        return {Level::eFailed, "switch",
                "the server is not connected to it; its log has the reason, see switch.host and switch.port"};
    }
    if (!link.value("monitoring", false)) {
        return {Level::eFailed, "switch",
                "it does not report the calls of line " + status.value("line", "") +
                    "; is this device (line.device) known there, and may it be monitored?"};
    }
    return {Level::eGood, "switch", "connected, and reports the calls of line " + status.value("line", "")};
}

/// For a program that runs a telephone itself.
Finding telephoneFinding(const Json& telephone) {
    const std::string state = telephone.value("state", "");
    if (state == "ready") {
        return {Level::eGood, "SIP telephone", "registered and ready"};
    }
    return {Level::eFailed, "SIP telephone", "is " + state + ": " + telephone.value("reason", "")};
}

Finding connect(const host::Configuration::Switch& callSwitch) {
    const std::string where = host::Endpoint{callSwitch.host, callSwitch.port}.text();
    host::SwitchConnection::Peer peer{.host = callSwitch.host, .port = callSwitch.port};
    if (callSwitch.tls) {
        peer.tls = callSwitch.trust;
    }
    asio::io_context loop;
    Finding finding{Level::eFailed, "switch", where + " does not respond; see switch.host and switch.port"};
    host::SwitchConnection connection(
        loop, peer, host::ExponentialBackoff(kNever, kNever),
        {[&] {
             finding = {Level::eGood, "switch",
                        where + " takes connections" + (callSwitch.tls ? " with TLS" : "")};
             loop.stop();
         },
         [](const host::Frame& /*frame*/) {},
         [&](const std::string& reason) {
             finding.text = where + " is not reached: " + reason + "; see switch.host and switch.port";
             loop.stop();
         }},
        {});
    connection.open();
    loop.run_for(kPatience);
    connection.close();
    return finding;
}

}  // namespace

Findings examineConnections(const CommonOptions& common, const host::Configuration& configuration) {
    Findings findings;
    try {
        const std::optional<Json> status = statusOf(common, findings);
        findings.push_back(status ? findingOf(*status) : connect(configuration.callSwitch));
        if (status && status->contains("telephone") && status->at("telephone").is_object()) {
            findings.push_back(telephoneFinding(status->at("telephone")));
        }
    } catch (const std::exception& error) {
        findings.push_back({Level::eFailed, "switch", error.what()});
    }
    return findings;
}

}  // namespace calljournal
