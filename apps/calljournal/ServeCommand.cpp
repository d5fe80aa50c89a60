#include <CLI/CLI.hpp>
#include <iostream>

#include "apps/calljournal/Command.h"
#include "apps/calljournal/CommandLine.h"
#include "apps/calljournal/JournalServer.h"
#include "apps/calljournal/ServeOptions.h"
#include "apps/calljournal/StopSignal.h"
#include "host/config/Endpoint.h"
#include "host/presentation/PlainText.h"

namespace calljournal {
namespace {

class ServeCommand final : public Command {
public:
    explicit ServeCommand(CLI::App& app) { m_options.addTo(app, true); }

    int run(const CommonOptions& common) override {
        const StopSignal stop;
        const host::Configuration configuration = m_options.configure();
        const auto directory = common.dataDirectory();
        const auto socket = JournalServer::claim(directory);
        JournalServer server(configuration, directory, *socket);
        server.start();
        std::cout << "calljournal serves line " << configuration.lines.front().device << " of the switch at "
                  << host::Endpoint{configuration.callSwitch.host, configuration.callSwitch.port}.text()
                  << "; socket " << host::printable(socket->path().string()) << "; page and API "
                  << server.httpAddress().text() << std::endl;
        static_cast<void>(stop.wait());
        std::cout << "calljournal ends" << std::endl;
        return server.end();
    }

private:
    ServeOptions m_options;
};

}  // namespace

std::unique_ptr<Command> makeServeCommand(CLI::App& app) {
    return std::make_unique<ServeCommand>(app);
}

}  // namespace calljournal
