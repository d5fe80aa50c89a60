// Measures pages, searches and statistics of the history, and the filing of a call (docs/performance.md):
//   history_benchmark DATA [DATA...] [--benchmark_...]
// tools/make-history has filled each DATA. Pages and statistics are those of the first one; calls are filed
// in all.

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstddef>
#include <cstdio>
#include <exception>
#include <functional>
#include <optional>
#include <string>
#include <utility>

#include "bench/history/FilingBenchmark.h"
#include "host/database/Database.h"
#include "host/history/CallHistory.h"
#include "host/history/CallKey.h"
#include "host/history/CallStatistics.h"
#include "host/history/FilterText.h"

namespace {

constexpr const char* kLine = "2001";

/// Registers the work as a benchmark. The counter `calls` is its result.
void measure(const std::string& name, const std::function<std::size_t()>& work) {
    benchmark::RegisterBenchmark(name.c_str(), [work](benchmark::State& state) {
        std::size_t found = 0;
        for (auto _ : state) {
            found = work();
        }
        state.counters["calls"] = static_cast<double>(found);
    })->Unit(benchmark::kMillisecond);
}

std::string textOf(const host::FilterText::Parameters& parameters) {
    std::string text;
    for (const auto& [name, value] : parameters) {
        text.append(text.empty() ? "" : "&").append(name).append("=").append(value);
    }
    return text;
}

class History {
public:
    explicit History(const std::string& data) : m_database(data + "/journal.db") {
        const host::CallPage newest = m_history.page({}).value();
        m_now = newest.calls.front().start + std::chrono::seconds(1);
    }

    void pages() {
        const std::string number = m_history.page({}).value().calls.back().party.number;
        page({});
        page({{"sort", "start"}});
        page({{"since", "400d"}, {"until", "300d"}});
        const std::chrono::sys_seconds middle = m_now - std::chrono::days(350);
        page({{"cursor", host::cursorAfter(host::CallKey::before(middle.time_since_epoch().count()))}});
        for (const char* list : {"missed", "dialled", "received", "forwarded"}) {
            page({{"list", list}});
        }
        page({{"direction", "incoming"}});
        page({{"viewed", "false"}});
        page({{"number", number}});
        for (const char* search : {"e", "muller", "ann mu", "no such name", "4930", "49 30/123"}) {
            page({{"search", search}});
            page({{"search", search}, {"list", "missed"}, {"until", "300d"}});
        }
        page({{"search", "e"}, {"direction", "incoming"}, {"since", "400d"}, {"sort", "start"}});
        page({{"min-duration", "300"}});
    }

    void statistics() {
        count("", {});
        for (const auto& [name, by] :
             {std::pair{"day", host::CallGrouping::eDay}, std::pair{"hour", host::CallGrouping::eHour},
              std::pair{"weekday", host::CallGrouping::eWeekday},
              std::pair{"party", host::CallGrouping::eParty}}) {
            count(std::string(" by ") + name, by);
        }
    }

private:
    void page(const host::FilterText::Parameters& parameters) {
        const host::CallQuery query = host::FilterText(m_now, m_zone).query(parameters);
        measure("page " + textOf(parameters),
                [this, query] { return m_history.page(query).value().calls.size(); });
    }

    void count(const std::string& name, std::optional<host::CallGrouping> by) {
        host::StatisticsQuery query{{}, by, m_zone};
        query.filter.since = m_now - std::chrono::days(365);
        measure("statistics of a year" + name, [this, query] {
            return static_cast<std::size_t>(m_statistics.of(query, m_now).value().totals.calls);
        });
    }

    const host::Zone m_zone = host::Zone::named("Europe/Berlin").value();
    host::Database m_database;
    host::CallHistory m_history{m_database, kLine, nullptr};
    host::CallStatistics m_statistics{m_database, kLine, nullptr};
    std::chrono::sys_seconds m_now{};
};

}  // namespace

int main(int count, char** arguments) {
    try {
        benchmark::Initialize(&count, arguments);
        if (count < 2) {
            std::fputs("usage: history_benchmark DATA [DATA...] [--benchmark_...]\n", stderr);
            return 2;
        }
        History history(arguments[1]);
        history.pages();
        history.statistics();
        for (int number = 1; number < count; ++number) {
            bench::registerFiling(arguments[number]);
        }
        benchmark::RunSpecifiedBenchmarks();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "history_benchmark: %s\n", error.what());
        return 1;
    }
    return 0;
}
