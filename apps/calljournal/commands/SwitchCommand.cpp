#include <CLI/CLI.hpp>
#include <chrono>
#include <cstdint>
#include <functional>
#include <iostream>
#include <map>
#include <memory>
#include <optional>
#include <stdexcept>
#include <vector>

#include "apps/calljournal/command-line/Command.h"
#include "apps/calljournal/command-line/CommandLine.h"
#include "apps/calljournal/command-line/EndpointOption.h"
#include "apps/calljournal/command-line/ResponseModeOption.h"
#include "apps/calljournal/command-line/TrafficOption.h"
#include "apps/calljournal/server/StopSignal.h"
#include "host/config/Endpoint.h"
#include "host/log/Log.h"
#include "host/switch/scenario/DemoScenario.h"
#include "host/switch/scenario/ScenarioError.h"
#include "host/switch/scenario/ScenarioParser.h"
#include "host/switch/server/SwitchSimulator.h"
#include "host/switch/traffic/CallsFile.h"
#include "host/tls/ServerCertificate.h"

namespace calljournal {
namespace {

class SwitchCommand final : public Command {
public:
    explicit SwitchCommand(CLI::App& app) {
        addListenOption(app, "--listen", m_listen,
                        "the address that clients connect to; port 0 selects a free port [127.0.0.1:4242]");
        auto* const scenario =
            app.add_option("--scenario", m_scenario, "the calls to play [those of the demo]")
                ->type_name("FILE");
        auto* const loop = app.add_flag("--loop", m_loop, "repeat the scenario");
        addTrafficOptions(app, m_traffic)->excludes(scenario)->excludes(loop);
        app.add_option(
               "--rate", m_rate,
               "scale the waits of the scenario to this many calls per second; with --lines: this many "
               "calls per second on average [1]")
            ->type_name("CALLS_PER_S")
            ->check(std::function<std::string(const std::string&)>([](const std::string& text) {
                return CLI::PositiveNumber(text).empty() ? std::string() : text + " is not a number above 0";
            }));
        app.add_flag("--call-log", m_callLog,
                     "store a call log as a switch does, and report it to the phones");
        app.add_flag("--echo-deletions", m_echoDeletions,
                     "report a deletion in the call log to the phone that requested it, too");
        addResponseModeOption(app, m_responseModes);
        app.add_option("--callee", m_callee,
                       "the party of each call that a client places: takes, rings or busy [takes]")
            ->type_name("takes|rings|busy")
            ->transform(CLI::CheckedTransformer(
                std::map<std::string, host::Callee>{{"takes", host::Callee::eTakesCall},
                                                    {"rings", host::Callee::eRings},
                                                    {"busy", host::Callee::eBusy}}));
        auto* const certificate =
            app.add_option("--tls-certificate", m_tls.certificate, "speak TLS, with this certificate (PEM)")
                ->type_name("FILE");
        auto* const key =
            app.add_option("--tls-key", m_tls.key, "the key of --tls-certificate (PEM)")->type_name("FILE");
        app.add_option("--client-ca", m_clientAuthorities,
                       "require a certificate of the clients, of an authority in this file (PEM)")
            ->type_name("FILE")
            ->needs(certificate);
        certificate->needs(key);
        key->needs(certificate);
        app.add_flag("--log-messages", m_logMessages, "log every message received and sent");
    }

    // The first text line of the output contains the listening address, for a parent process that starts it
    // with port 0.
    int run(const CommonOptions& /*common*/) override {
        const StopSignal stop;
        if (m_logMessages) {
            host::Log::configure("debug", "");
        }
        std::optional<host::Scenario> scenario;
        if (m_traffic.lines.empty()) {
            scenario = m_scenario.empty() ? host::parseScenario(host::demoScenarioText(), "demo")
                                          : host::loadScenario(m_scenario);
        }
        std::optional<host::CallsFile> callsFile;
        if (!m_traffic.callsFile.empty()) {
            callsFile.emplace(m_traffic.callsFile);
        }
        const host::Endpoint listen = host::parseEndpoint(m_listen).value();
        host::SwitchSimulator simulator({.address = listen.host,
                                         .port = listen.port,
                                         .callLog = m_callLog,
                                         .echoDeletions = m_echoDeletions,
                                         .callee = m_callee,
                                         .certificate = certificate()});
        listenWith(simulator, listen);
        for (const auto& [request, mode] : readResponseMode(m_responseModes)) {
            simulator.setResponseMode(request, mode);
        }
        std::cout << "switch listens on " << host::Endpoint{listen.host, simulator.port()}.text()
                  << std::endl;
        if (scenario) {
            playScenario(simulator, *scenario);
        } else {
            playTraffic(simulator, callsFile);
        }
        static_cast<void>(stop.wait());
        simulator.stop();
        if (callsFile && !callsFile->finish()) {
            throw std::runtime_error("the file " + m_traffic.callsFile +
                                     " is incomplete: the disk may be full");
        }
        return eDone;
    }

private:
    void playScenario(host::SwitchSimulator& simulator, const host::Scenario& scenario) const {
        simulator.run(
            scenario,
            {.loop = m_loop,
             .rate = m_rate,
             .print = [](const std::string& text) { std::cout << text << std::flush; },
             .finished = [] { std::cout << "scenario is over; Ctrl-C ends the switch" << std::endl; }});
    }

    void playTraffic(host::SwitchSimulator& simulator, std::optional<host::CallsFile>& callsFile) const {
        const auto calls = std::make_shared<std::uint64_t>(0);
        simulator.run(trafficOptions(m_traffic, m_rate),
                      {.begun = [calls] { ++*calls; },
                       .ended =
                           [&callsFile](const std::string& callId, const host::TrafficPart& part) {
                               if (callsFile) {
                                   callsFile->add(callId, part, std::chrono::system_clock::now());
                               }
                           },
                       .finished =
                           [calls, &callsFile] {
                               // The end of the program reports a failure.
                               if (callsFile) {
                                   static_cast<void>(callsFile->finish());
                               }
                               std::cout << "traffic is over, " << *calls << " calls; Ctrl-C ends the switch"
                                         << std::endl;
                           }});
    }

    [[nodiscard]] std::shared_ptr<const host::ServerCertificate> certificate() const {
        return m_tls.certificate.empty()
                   ? nullptr
                   : std::make_shared<host::ServerCertificate>(m_tls, m_clientAuthorities);
    }

    static void listenWith(host::SwitchSimulator& simulator, const host::Endpoint& listen) {
        try {
            simulator.start();
        } catch (const std::exception& error) {
            throw std::runtime_error("cannot listen on " + listen.text() + ": " + error.what() +
                                     "; choose another address with --listen");
        }
    }

    std::string m_listen = "127.0.0.1:4242";
    std::string m_scenario;
    TrafficValues m_traffic;
    host::CertificateFiles m_tls;
    std::string m_clientAuthorities;
    std::vector<std::string> m_responseModes;
    bool m_logMessages = false;
    bool m_loop = false;
    bool m_callLog = false;
    bool m_echoDeletions = false;
    host::Callee m_callee = host::Callee::eTakesCall;
    double m_rate = 0;
};

}  // namespace

std::unique_ptr<Command> makeSwitchCommand(CLI::App& app) {
    return std::make_unique<SwitchCommand>(app);
}

}  // namespace calljournal
