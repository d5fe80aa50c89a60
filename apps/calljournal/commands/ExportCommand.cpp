#include <unistd.h>

#include <CLI/CLI.hpp>
#include <iostream>
#include <nlohmann/json.hpp>
#include <optional>

#include "apps/calljournal/client/CallPages.h"
#include "apps/calljournal/client/ListClient.h"
#include "apps/calljournal/command-line/Command.h"
#include "apps/calljournal/command-line/CommandLine.h"
#include "apps/calljournal/command-line/FilterOptions.h"
#include "apps/calljournal/command-line/ListOptions.h"
#include "apps/calljournal/output/JsonText.h"
#include "apps/calljournal/output/OutputStatus.h"
#include "apps/calljournal/output/ProgressText.h"
#include "host/call-files/CallCalendar.h"
#include "host/call-files/CallWriter.h"
#include "host/presentation/ItemCsv.h"
#include "host/presentation/ItemJson.h"

namespace calljournal {
namespace {

using Json = nlohmann::ordered_json;

/// Prints a list in JSON, or the calls of the history that are selected.
class ExportCommand final : public Command {
public:
    explicit ExportCommand(CLI::App& app) {
        addListOption(app, m_list, ListOption::eOptional);
        addFormatOption(
            app, m_format, {"csv", "json", "jsonl", "ical"},
            "csv, a line for each call; json, one object; jsonl, an object for each call on a line; "
            "ical, a calendar");
        m_filters.addSelection(app);
        m_filters.addOrder(app);
        addLimitOption(app, m_limit, "print at most N calls");
        app.callback([this] {
            if (m_list == wordOf(ListName::eCallbacks) && !isWholeList()) {
                throw CLI::ValidationError(
                    "callbacks are no calls: they are exported as csv or json only, "
                    "without filters");
            }
        });
    }

    int run(const CommonOptions& common) override {
        host::ApiClient client(common.server());
        if (m_list == wordOf(ListName::eCallbacks) || (isWholeList() && m_format == "json")) {
            exportList(client);
        } else {
            exportCalls(client);
        }
        return statusOfOutput();
    }

private:
    /// True if a list without any selection of calls is to be exported, in a format for entries.
    [[nodiscard]] bool isWholeList() const {
        return !m_list.empty() && m_filters.query().empty() && m_limit == 0 &&
               (m_format == "csv" || m_format == "json");
    }

    void exportList(host::ApiClient& client) const {
        const ListName list = listNamed(m_list).value();
        const Json response = fetchList(client, list);
        std::cout << (m_format == "csv" ? host::csvText(list, response["items"])
                                        : host::jsonText(response) + "\n");
    }

    void exportCalls(host::ApiClient& client) const {
        const auto line = m_format == "ical" ? textIn(client.get({"status"}), "line") : std::string();
        std::cout << head();
        const char* between = "";
        ProgressText progress;
        const bool showsProgress = ::isatty(STDOUT_FILENO) == 0;
        std::size_t count = 0;
        const Json next = visitCalls(client, query(), limit(), [&](const Json& call) {
            if (++count % 1000 == 0 && showsProgress) {
                progress.show(std::to_string(count) + " calls", 0, 0);
            }
            if (m_format == "json") {
                std::cout << between << host::jsonText(call);
                between = ",";
            } else {
                std::cout << textOf(call, line);
            }
        });
        if (m_format == "json") {
            std::cout << R"(],"next":)" << host::jsonText(next) << "}\n";
        } else if (m_format == "ical") {
            std::cout << host::calendarEnd();
        }
    }

    [[nodiscard]] std::string head() const {
        if (m_format == "csv") {
            return host::callCsvHead();
        }
        if (m_format == "ical") {
            return host::calendarBegin();
        }
        return m_format == "json" ? R"({"items":[)" : "";
    }

    [[nodiscard]] std::string textOf(const Json& call, const std::string& line) const {
        if (m_format == "csv") {
            return host::callCsvRow(call);
        }
        return m_format == "ical" ? host::calendarEvent(call, line) : host::callJsonLine(call);
    }

    [[nodiscard]] host::ApiClient::Query query() const {
        host::ApiClient::Query query = m_filters.query();
        if (!m_list.empty()) {
            query.emplace_back("list", m_list);
        }
        return query;
    }

    [[nodiscard]] std::optional<std::size_t> limit() const {
        return m_limit > 0 ? std::optional(m_limit) : std::nullopt;
    }

    std::string m_list;
    std::string m_format;
    FilterOptions m_filters;
    std::size_t m_limit = 0;
};

}  // namespace

std::unique_ptr<Command> makeExportCommand(CLI::App& app) {
    return std::make_unique<ExportCommand>(app);
}

}  // namespace calljournal
