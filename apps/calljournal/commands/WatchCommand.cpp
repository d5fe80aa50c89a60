#include <CLI/CLI.hpp>
#include <filesystem>
#include <iostream>
#include <optional>

#include "apps/calljournal/client/CallFailure.h"
#include "apps/calljournal/command-line/Command.h"
#include "apps/calljournal/command-line/CommandLine.h"
#include "apps/calljournal/output/ErrorOutput.h"
#include "apps/calljournal/output/OutputStatus.h"
#include "apps/calljournal/output/WatchText.h"
#include "apps/calljournal/server/StopSignal.h"
#include "host/presentation/PlainText.h"
#include "host/remote/RemoteClient.h"
#include "host/remote/RemoteError.h"
#include "platform/journal-library/ClientRequest.h"
#include "platform/journal-library/ClientResponse.h"

namespace calljournal {
namespace {

class WatchCommand final : public Command {
public:
    explicit WatchCommand(CLI::App& app) { app.add_flag("--json", m_json, "print one JSON object a line"); }

    int run(const CommonOptions& common) override {
        const StopSignal stop;
        host::RemoteClient client(common.dataDirectory());
        if (!common.line.empty()) {
            client.setLine(common.line);
        }
        m_directory = common.dataDirectory();
        const auto request = journalxml::buildRequest(journalxml::MethodId::eSubscribeForJournalEvents);
        const auto response = client.call(request, stop.descriptor());
        if (!response) {
            return eDone;
        }
        if (journalxml::parseBoolResponse(*response) != true) {
            throw host::RemoteError("calljournal refused the subscription; see its log");
        }
        for (const std::string& notification : client.takeNotifications()) {
            printInitial(notification);
        }
        while (std::cout.good()) {
            const auto notification = client.nextNotification(stop.descriptor());
            if (!notification) {
                break;
            }
            print(*notification);
        }
        return outputHasReader() ? statusOfOutput() : eDone;
    }

private:
    /// Prints a notification that a new subscriber gets before any change. Without --json, only the counts
    /// are printed.
    void printInitial(const std::string& notification) const {
        const auto message = journalxml::parseObserverMessage(notification);
        if (m_json || (message && isCount(*message))) {
            print(notification);
        }
    }

    void print(const std::string& notification) const {
        const auto message = journalxml::parseObserverMessage(notification);
        if (!message) {
            printError("an invalid message was ignored");
        } else if (m_json) {
            std::cout << watchJson(*message) << std::endl;
        } else {
            std::cout << host::timeOfDay() << "  " << watchText(*message)
                      << failureText(m_directory, *message) << std::endl;
        }
    }

    bool m_json = false;
    std::filesystem::path m_directory;
};

}  // namespace

std::unique_ptr<Command> makeWatchCommand(CLI::App& app) {
    return std::make_unique<WatchCommand>(app);
}

}  // namespace calljournal
