#include <CLI/CLI.hpp>
#include <exception>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "apps/calljournal/command-line/Command.h"
#include "apps/calljournal/command-line/CommandLine.h"
#include "apps/calljournal/command-line/ServeOptions.h"
#include "apps/calljournal/command-line/SipOptions.h"
#include "apps/calljournal/server/JournalServer.h"
#include "apps/calljournal/server/ServiceLoop.h"
#include "apps/calljournal/server/StopSignal.h"
#include "host/config/ConfigurationChanges.h"
#include "host/config/ConfigurationError.h"
#include "host/config/Endpoint.h"
#include "host/presentation/PlainText.h"
#include "host/sip/SipGateway.h"
#include "host/systemd/ServiceManager.h"
#include "platform/logging/Logging.h"
#include "platform/texts/SoftwareTypes.h"

namespace calljournal {
namespace {

class ServeCommand final : public Command {
public:
    explicit ServeCommand(CLI::App& app) {
        m_options.addTo(app, true);
        app.add_option("--sip", m_account, "run a SIP gateway with this account too; its line is the user")
            ->type_name("FILE")
            ->excludes("--switch");
    }

    int run(const CommonOptions& common) override {
        const StopSignal stop;
        host::Configuration configuration = m_options.configure(kLogLevel, defaults());
        const host::Configuration loaded = configuration;
        const auto directory = common.dataDirectory();
        const auto socket = JournalServer::claim(directory);
        const std::unique_ptr<host::SipGateway> gateway = startGatewayFor(configuration, common);
        JournalServer server(configuration, directory, *socket);
        if (gateway) {
            server.setTelephone([&gateway] { return telephoneOf(*gateway); });
        }
        server.setConfigurationFile(m_options.file());
        server.start();
        std::cout << "calljournal serves line " << configuration.lines.front().device << " of the switch at "
                  << host::Endpoint{configuration.callSwitch.host, configuration.callSwitch.port}.text()
                  << "; socket " << host::printable(socket->path().string()) << "; page and API "
                  << server.httpAddress().text() << std::endl;
        host::ServiceManager::ready("serves line " + configuration.lines.front().device);
        runService(
            stop, [this, &loaded, &server] { reload(loaded, server); }, [&server] { server.reportAlive(); });
        std::cout << "calljournal ends" << std::endl;
        if (gateway) {
            // First, so that the journal files the calls that this ends. The link ends before the gateway.
            gateway->endCalls();
        }
        return server.end();
    }

private:
    static constexpr const char* kLogLevel = "info";

    /// Reads the configuration again. `running` is that of the start.
    void reload(const host::Configuration& running, JournalServer& server) const {
        try {
            const host::Configuration next = m_options.load(kLogLevel, defaults());
            configureLog(next.log);
            logAppUni("Configuration", __FILE_NAME__, 4, __LINE__, "the configuration is read again");
            for (const std::string& key : host::changesThatNeedRestart(running, next)) {
                logAppUni("Configuration", __FILE_NAME__, 3, __LINE__,
                          "the new value of %s has its effect at the next start", key.c_str());
            }
        } catch (const std::exception& error) {
            logAppUni("Configuration", __FILE_NAME__, 2, __LINE__,
                      "the configuration stays as it was, since it cannot be read again: %s", error.what());
        }
        try {
            server.reload();
        } catch (const std::exception& error) {
            logAppUni("Configuration", __FILE_NAME__, 2, __LINE__, "the former certificate stays: %s",
                      error.what());
        }
    }

    [[nodiscard]] static host::TelephoneState telephoneOf(const host::SipGateway& gateway) {
        const host::PhoneState state = gateway.phoneState();
        return {.isReady = state.kind == host::PhoneState::Kind::eReady,
                .word = wordOf(state.kind),
                .reason = state.reason};
    }

    /// The gateway reports each event of its telephone, and the rules for SIP phones take all of them: with
    /// the others a held call looks connected.
    [[nodiscard]] host::Configuration defaults() const {
        host::Configuration configuration;
        if (!m_account.empty()) {
            configuration.management["software-type"] = softwaretypes::sip;
        }
        return configuration;
    }

    /// Throws `ConfigurationError` if the configuration file has a switch or a line, which `--sip` would
    /// replace. Default values, as in a file that has all keys, are none.
    static void requireNoOtherSwitch(const host::Configuration& configuration) {
        const host::Configuration::Switch usual;
        if (configuration.callSwitch.host != usual.host || configuration.callSwitch.port != usual.port ||
            configuration.lines.front().device != host::Configuration::Line().device) {
            throw host::ConfigurationError(
                "--sip has its own switch and line: remove switch.host, switch.port and line.device from the "
                "configuration, or serve without --sip");
        }
    }

    /// Throws `ConfigurationError` if the telephone needs the port of the page.
    static void requireOtherPort(const host::SipAccount& account, const host::Endpoint& page) {
        const std::optional<host::Endpoint> sip = host::parseEndpoint(account.listen);
        if (sip && sip->host == page.host && (page.port == sip->port || page.port == sip->port + 1)) {
            throw host::ConfigurationError(
                "--listen " + page.text() + ": the telephone uses this port, because sip.listen is " +
                sip->text() + ", and it takes that port and the next one; choose another for one of them");
        }
    }

    /// The gateway of `--sip`, which the configuration then has as its switch; otherwise nullptr.
    [[nodiscard]] std::unique_ptr<host::SipGateway> startGatewayFor(host::Configuration& configuration,
                                                                    const CommonOptions& common) const {
        if (m_account.empty()) {
            return nullptr;
        }
        requireNoOtherSwitch(configuration);
        host::SipAccount account = host::loadSipAccount(m_account);
        requireOtherPort(account, configuration.api.listen);
        const host::Endpoint listen{"127.0.0.1", 0};
        auto gateway = std::make_unique<host::SipGateway>(
            host::SipGatewayOptions{.account = std::move(account),
                                    .directory = sipDirectory(common),
                                    .listen = listen,
                                    .edition = configuration.callSwitch.edition});
        startGateway(*gateway, listen);
        configuration.callSwitch.host = gateway->endpoint().host;
        configuration.callSwitch.port = gateway->endpoint().port;
        configuration.lines.front().device = gateway->device();
        return gateway;
    }

    ServeOptions m_options;
    std::string m_account;
};

}  // namespace

std::unique_ptr<Command> makeServeCommand(CLI::App& app) {
    return std::make_unique<ServeCommand>(app);
}

}  // namespace calljournal
