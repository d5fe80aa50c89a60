#include <CLI/CLI.hpp>
#include <iostream>
#include <stdexcept>

#include "apps/calljournal/command-line/Command.h"
#include "apps/calljournal/command-line/CommandLine.h"
#include "apps/calljournal/command-line/ServeOptions.h"
#include "apps/calljournal/server/ChildProcess.h"
#include "apps/calljournal/server/JournalServer.h"
#include "apps/calljournal/server/StopSignal.h"
#include "host/config/Endpoint.h"
#include "host/presentation/PlainText.h"

namespace calljournal {
namespace {

/// The called line of the built-in scenario.
constexpr const char* kDemoLine = "2001";

void printChange(const std::string& sentence) {
    std::cout << host::timeOfDay() << "  " << host::printable(sentence) << std::endl;
}

/// The listening address of the simulated switch, which it prints in its first text line.
host::Endpoint endpointOf(ChildProcess& simulator) {
    const std::string line = simulator.readLine(std::chrono::seconds(10));
    const auto endpoint = host::parseEndpoint(line.substr(line.rfind(' ') + 1));
    if (!endpoint) {
        throw std::runtime_error("the simulated switch did not start");
    }
    return *endpoint;
}

class DemoCommand final : public Command {
public:
    explicit DemoCommand(CLI::App& app) { m_options.addTo(app, false); }

    int run(const CommonOptions& common) override {
        const StopSignal stop;
        host::Configuration configuration = m_options.configure("warning");
        if (configuration.lines.front().device != kDemoLine) {
            throw std::runtime_error("the simulated switch of the demo calls line " + std::string(kDemoLine) +
                                     " only; for line " + configuration.lines.front().device +
                                     " start `calljournal switch` with a scenario and `calljournal serve`");
        }
        // With this setting, calls that the simulated switch forwards are in the forwarded list.
        configuration.managementOverrides.try_emplace("server-based-features", "true");
        const auto directory = common.dataDirectory();
        const auto socket = JournalServer::claim(directory);
        ChildProcess simulator({"switch", "--listen", "127.0.0.1:0", "--loop"});
        const host::Endpoint endpoint = endpointOf(simulator);
        configuration.callSwitch.host = endpoint.host;
        configuration.callSwitch.port = endpoint.port;

        JournalServer server(configuration, directory, *socket);
        server.setChangeListener(&printChange);
        server.start();
        greet(common, configuration, simulator.id(), server.httpAddress());
        while (!stop.wait(simulator.output())) {
            if (!simulator.discardOutput()) {
                throw std::runtime_error("the simulated switch has ended");
            }
        }
        std::cout << "calljournal ends" << std::endl;
        return server.end();
    }

private:
    static void greet(const CommonOptions& common, const host::Configuration& configuration, pid_t switchId,
                      const JournalServer::HttpAddress& http) {
        std::cout << "calljournal serves line " << configuration.lines.front().device
                  << " of a simulated switch at "
                  << host::Endpoint{configuration.callSwitch.host, configuration.callSwitch.port}.text()
                  << " (process " << switchId
                  << "). Calls are coming in.\n\nLook at them in a browser:\n\n    " << http.signInText()
                  << "\n\nor from another terminal:\n\n    " << common.commandForUser("list missed")
                  << "\n    " << common.commandForUser("watch") << "\n\nCtrl-C ends it." << std::endl;
    }

    ServeOptions m_options;
};

}  // namespace

std::unique_ptr<Command> makeDemoCommand(CLI::App& app) {
    return std::make_unique<DemoCommand>(app);
}

}  // namespace calljournal
