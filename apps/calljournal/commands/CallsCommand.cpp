#include <unistd.h>

#include <CLI/CLI.hpp>
#include <iostream>
#include <nlohmann/json.hpp>
#include <optional>

#include "apps/calljournal/client/CallPages.h"
#include "apps/calljournal/command-line/Command.h"
#include "apps/calljournal/command-line/CommandLine.h"
#include "apps/calljournal/command-line/FilterOptions.h"
#include "apps/calljournal/command-line/ListOptions.h"
#include "apps/calljournal/command-line/OutputOption.h"
#include "apps/calljournal/output/JsonText.h"
#include "apps/calljournal/output/OutputStatus.h"
#include "apps/calljournal/output/TerminalWidth.h"
#include "apps/calljournal/output/TextTable.h"
#include "host/call-files/CallTime.h"
#include "host/call-files/CallWriter.h"
#include "host/presentation/ItemJson.h"
#include "host/presentation/PlainText.h"

namespace calljournal {
namespace {

using Json = nlohmann::ordered_json;

/// The number of calls that a terminal shows without --limit.
constexpr std::size_t kUsualLimit = 50;

TableRow rowOf(const Json& call) {
    const std::string number = textIn(call, "number");
    const std::string connected = textIn(call, "connectedNumber");
    std::string name = nameIn(call);
    if (name.empty() && number.empty()) {
        name = "unknown";  // the caller withholds both
    }
    const auto duration = call.value("duration", 0L);
    const bool isMissed = textIn(call, "list") == "missed";
    return {isMissed && !call.value("viewed", true),
            {host::localTime(textIn(call, "start")), textIn(call, "list"), name, number,
             connected == number ? std::string() : connected,
             duration == 0 ? std::string() : host::durationText(std::chrono::seconds(duration)),
             textIn(call, "reason")},
            isMissed ? Emphasis::eAlarm : Emphasis::eNone};
}

class CallsCommand final : public Command {
public:
    explicit CallsCommand(CLI::App& app) {
        m_filters.addSelection(app);
        m_filters.addOrder(app);
        addLimitOption(app, m_limit, "print at most N calls [all; 50 on a terminal]");
        m_output.addTo(app);
    }

    int run(const CommonOptions& common) override {
        host::ApiClient client(common.server());
        if (m_output.isCsv()) {
            std::cout << host::callCsvHead();
            static_cast<void>(visitCalls(client, m_filters.query(), limit(),
                                         [](const Json& call) { std::cout << host::callCsvRow(call); }));
        } else if (m_output.isJson()) {
            Json items = Json::array();
            Json next = visitCalls(client, m_filters.query(), limit(),
                                   [&](const Json& call) { items.push_back(call); });
            std::cout << host::jsonText({{"items", std::move(items)}, {"next", std::move(next)}}) << "\n";
        } else {
            printTable(client);
        }
        return statusOfOutput();
    }

private:
    [[nodiscard]] std::optional<std::size_t> limit() const {
        if (m_limit > 0) {
            return m_limit;
        }
        return m_output.isTable() && ::isatty(STDOUT_FILENO) != 0 ? std::optional(kUsualLimit) : std::nullopt;
    }

    void printTable(host::ApiClient& client) const {
        std::vector<TableRow> rows;
        const Json next = visitCalls(client, m_filters.query(), limit(),
                                     [&rows](const Json& call) { rows.push_back(rowOf(call)); });
        if (rows.empty()) {
            std::cout << "no calls" << (m_filters.selectsCalls() ? " found\n" : " in the history\n");
        }
        std::cout << tableText({"TIME", "LIST", "NAME", "NUMBER", "CONNECTED", "DURATION", "REASON"}, rows,
                               {terminalWidth(), {2, 4, 3}, isColoured()});
        if (!next.is_null()) {
            std::cout << "(" << rows.size() << " shown; there are more: --limit N)\n";
        }
    }

    FilterOptions m_filters;
    std::size_t m_limit = 0;
    OutputOption m_output;
};

}  // namespace

std::unique_ptr<Command> makeCallsCommand(CLI::App& app) {
    return std::make_unique<CallsCommand>(app);
}

}  // namespace calljournal
