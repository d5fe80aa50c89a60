#include <CLI/CLI.hpp>
#include <iostream>
#include <stdexcept>

#include "apps/calljournal/Command.h"
#include "apps/calljournal/CommandLine.h"
#include "apps/calljournal/EndpointOption.h"
#include "apps/calljournal/StopSignal.h"
#include "host/config/Endpoint.h"
#include "host/switch/Scenario.h"
#include "host/switch/SwitchSimulator.h"

namespace host {
namespace {

class SwitchCommand final : public Command {
public:
    explicit SwitchCommand(CLI::App& app) {
        addEndpointOption(app, "--listen", m_listen,
                          "where clients connect; port 0 takes a free one [127.0.0.1:4242]");
        app.add_option("--scenario", m_scenario, "the calls to play [those of the demo]")->type_name("FILE");
        app.add_flag("--loop", m_loop, "start over when the scenario is over");
        app.add_option("--rate", m_rate, "stretch or shrink the waits to this many calls a second")
            ->type_name("CALLS_PER_S")
            ->check(CLI::PositiveNumber);
    }

    // The first line of the output says where the switch listens: whoever starts it with port 0 reads it there.
    int run(const CommonOptions& /*common*/) override {
        const StopSignal stop;
        const Scenario scenario =
            m_scenario.empty() ? Scenario::parse(demoScenarioText(), "demo") : Scenario::load(m_scenario);
        const Endpoint listen = parseEndpoint(m_listen).value();
        SwitchSimulator simulator({.address = listen.host, .port = listen.port});
        listenWith(simulator, listen);
        std::cout << "switch listens on " << Endpoint{listen.host, simulator.port()}.text() << std::endl;
        simulator.run(scenario, {.loop = m_loop, .rate = m_rate, .finished = [] {
                                     std::cout << "scenario is over; Ctrl-C ends the switch" << std::endl;
                                 }});
        static_cast<void>(stop.wait());
        simulator.stop();
        return eDone;
    }

private:
    static void listenWith(SwitchSimulator& simulator, const Endpoint& listen) {
        try {
            simulator.start();
        } catch (const std::exception& error) {
            throw std::runtime_error("cannot listen on " + listen.text() + ": " + error.what() +
                                     "; choose another address with --listen");
        }
    }

    std::string m_listen = "127.0.0.1:4242";
    std::string m_scenario;
    bool m_loop = false;
    double m_rate = 0;
};

}  // namespace

std::unique_ptr<Command> makeSwitchCommand(CLI::App& app) {
    return std::make_unique<SwitchCommand>(app);
}

}  // namespace host
