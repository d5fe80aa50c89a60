#include <CLI/CLI.hpp>
#include <iostream>

#include "apps/calljournal/client/ListClient.h"
#include "apps/calljournal/command-line/Command.h"
#include "apps/calljournal/command-line/CommandLine.h"
#include "apps/calljournal/command-line/ListOptions.h"
#include "apps/calljournal/command-line/OutputOption.h"
#include "apps/calljournal/output/ErrorOutput.h"
#include "apps/calljournal/output/OutputStatus.h"
#include "apps/calljournal/output/TerminalWidth.h"
#include "host/api-client/ApiClient.h"
#include "host/presentation/ItemCsv.h"
#include "host/presentation/ItemJson.h"

namespace calljournal {
namespace {

class ListCommand final : public Command {
public:
    explicit ListCommand(CLI::App& app) {
        addListOption(app, m_list);
        addLimitOption(app, m_limit, "print only the newest N");
        app.add_option("--search", m_filter.search, "print only entries with TEXT in their name or number")
            ->type_name("TEXT");
        CLI::Option* const ids =
            app.add_flag("--ids", m_ids, "print the entries' ids instead of their calls");
        CLI::Option* const json = m_output.addTo(app);
        app.add_flag("--csv", m_csv, "print a line of CSV for each call, as -o csv")
            ->excludes(json)
            ->excludes(ids);
        ids->excludes(json);
    }

    int run(const CommonOptions& common) override {
        if (m_limit > 0) {
            m_filter.limit = m_limit;
        }
        const ListName list = listNamed(m_list).value();
        host::ApiClient client(common.server());
        const nlohmann::ordered_json response = fetchList(client, list, m_filter);
        if (m_csv || m_output.isCsv()) {
            std::cout << host::csvText(list, response["items"]);
        } else {
            std::cout << (m_output.isJson() ? host::jsonText(response) + "\n" : describe(response));
            if (m_output.isTable() && response["items"].empty() && isJournalOff(client)) {
                printError("the journal is switched off; `" +
                           common.commandForUser("settings call-log-enabled true") + "` switches it on");
            }
        }
        return statusOfOutput();
    }

private:
    [[nodiscard]] std::string describe(const nlohmann::ordered_json& response) const {
        std::vector<ListRow> rows;
        for (const auto& item : response["items"]) {
            rows.push_back(rowOf(item));
            if (rows.back().marked) {
                rows.back().emphasis = Emphasis::eAlarm;
            }
        }
        if (rows.empty()) {
            return "no entries " + std::string(m_filter.search.empty() ? "in the list" : "found") + "\n";
        }
        std::string text = tableText(rows, m_ids ? ListColumns::eEntryIds : ListColumns::eCalls,
                                     terminalWidth(), isColoured());
        if (const auto total = response["total"].get<std::size_t>(); rows.size() < total) {
            text += "(" + std::to_string(rows.size()) + " of " + std::to_string(total) + ")\n";
        }
        return text;
    }

    std::string m_list;
    std::size_t m_limit = 0;
    ListFilter m_filter;
    bool m_ids = false;
    OutputOption m_output;
    bool m_csv = false;
};

}  // namespace

std::unique_ptr<Command> makeListCommand(CLI::App& app) {
    return std::make_unique<ListCommand>(app);
}

}  // namespace calljournal
