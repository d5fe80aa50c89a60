#include <CLI/CLI.hpp>
#include <array>
#include <chrono>
#include <cstdint>
#include <iostream>
#include <nlohmann/json.hpp>
#include <utility>
#include <vector>

#include "apps/calljournal/command-line/Command.h"
#include "apps/calljournal/command-line/CommandLine.h"
#include "apps/calljournal/command-line/FilterOptions.h"
#include "apps/calljournal/command-line/ListOptions.h"
#include "apps/calljournal/command-line/OutputOption.h"
#include "apps/calljournal/output/CsvTable.h"
#include "apps/calljournal/output/JsonText.h"
#include "apps/calljournal/output/OutputStatus.h"
#include "apps/calljournal/output/TerminalWidth.h"
#include "apps/calljournal/output/TextTable.h"
#include "host/api-client/ApiClient.h"
#include "host/call-files/CallTime.h"
#include "host/presentation/ItemJson.h"
#include "host/presentation/PlainText.h"
#include "host/text-files/FileText.h"

namespace calljournal {
namespace {

using Json = nlohmann::ordered_json;

/// A count of the statistics with its title in a table and in a list.
struct Count {
    const char* member = nullptr;
    const char* title = nullptr;
    const char* text = nullptr;
    bool isDuration = false;
};

constexpr std::array<Count, 9> kCounts{{{"calls", "CALLS", "Calls"},
                                        {"answered", "RECEIVED", "Answered here"},
                                        {"missed", "MISSED", "Missed"},
                                        {"completedElsewhere", "ELSEWHERE", "Answered elsewhere"},
                                        {"dialled", "DIALLED", "Dialled"},
                                        {"forwarded", "FORWARDED", "Forwarded"},
                                        {"talkTime", "TALK TIME", "Talk time", true},
                                        {"longest", "LONGEST", "Longest call", true},
                                        {"callBackTime", "CALLED BACK", "Called back after", true}}};

std::string shown(const Json& counts, const Count& count) {
    const auto value = counts.find(count.member);
    if (value == counts.end() || value->is_null()) {
        return {};
    }
    return count.isDuration ? host::durationText(std::chrono::seconds(value->get<std::int64_t>()))
                            : textIn(counts, count.member);
}

/// One text line for each count.
std::string totalsText(const Json& totals) {
    std::string text;
    for (const Count& count : kCounts) {
        if (const std::string value = shown(totals, count); !value.empty()) {
            text += "  " + host::padded(count.text, 20) + value + "\n";
        }
    }
    return text;
}

constexpr std::array<const char*, 7> kWeekdays{"Monday", "Tuesday",  "Wednesday", "Thursday",
                                               "Friday", "Saturday", "Sunday"};

/// The cells of a group's key: a day, an hour, a day of the week, or a party with its name.
std::vector<std::string> keyCells(const Json& group, const std::string& by) {
    const std::string key = textIn(group, "key");
    if (by == "party") {
        const std::string name = nameIn(group);
        return {name.empty() && key.empty() ? "unknown" : name, key};
    }
    if (by == "weekday") {
        return {kWeekdays.at(group["key"].get<std::size_t>() - 1)};
    }
    return {by == "hour" ? (key.size() == 1 ? "0" : "") + key + ":00" : key};
}

/// A row for each group.
std::string groupsTable(const Json& groups, const std::string& by, bool asCsv) {
    std::vector<std::string> titles{host::upper(by)};
    std::vector<std::size_t> cut;
    if (by == "party") {
        titles = {"NAME", "NUMBER"};
        cut = {0, 1};
    }
    for (const Count& count : kCounts) {
        titles.emplace_back(count.title);
    }
    std::vector<TableRow> rows;
    for (const Json& group : groups) {
        TableRow row{false, keyCells(group, by)};
        for (const Count& count : kCounts) {
            const std::string value = shown(group, count);
            // Columns without a value in any row are left out.
            row.cells.push_back(!asCsv && (value == "0" || value == "0:00") ? std::string() : value);
        }
        rows.push_back(std::move(row));
    }
    return asCsv ? csvTable(titles, rows) : tableText(titles, rows, {terminalWidth(), cut, isColoured()});
}

class StatsCommand final : public Command {
public:
    explicit StatsCommand(CLI::App& app) {
        m_filters.addSelection(app);
        m_by = app.add_option("--by", m_grouping,
                              "count for each day, hour of the day, day of the week or party")
                   ->type_name("day|hour|weekday|party");
        addLimitOption(app, m_limit, "the number of parties [10]");
        m_output.addTo(app);
    }

    int run(const CommonOptions& common) override {
        host::ApiClient client(common.server());
        host::ApiClient::Query query = m_filters.query();
        if (m_by->count() > 0) {
            query.emplace_back("by", m_grouping);
        }
        if (m_limit > 0) {
            query.emplace_back("limit", std::to_string(m_limit));
        }
        const Json statistics = client.get({"statistics"}, query);
        if (m_output.isJson()) {
            std::cout << host::jsonText(statistics) << "\n";
        } else if (m_output.isCsv()) {
            std::cout << groupsOf(statistics, true);
        } else {
            std::cout << describe(statistics);
        }
        return statusOfOutput();
    }

private:
    [[nodiscard]] static std::string groupsOf(const Json& statistics, bool asCsv) {
        const std::string by = textIn(statistics, "by");
        return by.empty() ? groupsTable(statistics["topParties"], "party", asCsv)
                          : groupsTable(statistics["groups"], by, asCsv);
    }

    [[nodiscard]] static std::string describe(const Json& statistics) {
        const std::string table = groupsOf(statistics, false);
        return totalsText(statistics["totals"]) + (table.empty() ? "" : "\n" + table);
    }

    FilterOptions m_filters;
    CLI::Option* m_by = nullptr;
    std::string m_grouping;
    std::size_t m_limit = 0;
    OutputOption m_output;
};

}  // namespace

std::unique_ptr<Command> makeStatsCommand(CLI::App& app) {
    return std::make_unique<StatsCommand>(app);
}

}  // namespace calljournal
