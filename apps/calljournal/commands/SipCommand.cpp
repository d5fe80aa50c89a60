#include <CLI/CLI.hpp>
#include <asio/ip/address.hpp>
#include <iostream>
#include <stdexcept>
#include <system_error>

#include "apps/calljournal/command-line/Command.h"
#include "apps/calljournal/command-line/CommandLine.h"
#include "apps/calljournal/command-line/EndpointOption.h"
#include "apps/calljournal/command-line/SipOptions.h"
#include "apps/calljournal/server/StopSignal.h"
#include "host/config/Endpoint.h"
#include "host/log/Log.h"
#include "host/presentation/PlainText.h"
#include "host/sip/SipGateway.h"

namespace calljournal {
namespace {

class SipCommand final : public Command {
public:
    explicit SipCommand(CLI::App& app) {
        app.add_option("account", m_account,
                       "account file (TOML); with --baresip also the address of the account")
            ->type_name("FILE|sip:USER@HOST")
            ->required();
        addPeerOption(app, "--baresip", m_baresip,
                      "the control port of a telephone that runs already [start one]");
        addListenOption(app, "--listen", m_listen,
                        "the address that clients connect to; port 0 selects a free port [127.0.0.1:4242]");
        app.add_option("--log-level", m_logLevel, "the level of the log [info]")
            ->type_name("error|warning|info|debug|trace");
        app.add_flag("--log-private", m_logsParties, "show names and numbers in the log");
    }

    // The first text line of the output contains the listening address, for a parent process that starts it
    // with port 0.
    int run(const CommonOptions& common) override {
        const StopSignal stop;
        host::Log::configure({.level = m_logLevel,
                              .libraryLevel = m_logLevel,
                              .file = "",
                              .parties = m_logsParties ? host::Parties::eShown : host::Parties::eMasked});
        host::Endpoint listen = host::parseEndpoint(m_listen).value();
        if (listen.host == "localhost") {
            listen.host = "127.0.0.1";
        }
        std::error_code error;
        if (const auto address = asio::ip::make_address(listen.host, error);
            error || !address.is_loopback()) {
            throw host::ConfigurationError(
                "--listen must be a loopback address, 127.0.0.1 or ::1: who connects needs no password");
        }
        host::SipGateway gateway({.account = readAccount(m_account, m_baresip),
                                  .directory = sipDirectory(common),
                                  .listen = listen});
        startGateway(gateway, listen);
        std::cout << "SIP gateway for line " << host::printable(gateway.device()) << " listens on "
                  << gateway.endpoint().text() << std::endl;
        static_cast<void>(stop.wait());
        gateway.stop();
        return eDone;
    }

private:
    std::string m_account;
    std::string m_baresip;
    std::string m_listen = "127.0.0.1:4242";
    std::string m_logLevel = "info";
    bool m_logsParties = false;
};

}  // namespace

std::unique_ptr<Command> makeSipCommand(CLI::App& app) {
    return std::make_unique<SipCommand>(app);
}

}  // namespace calljournal
