// Measures pages, searches and statistics of the history (docs/performance.md):
//   history_benchmark DATA     DATA was filled by tools/make-history

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <exception>
#include <functional>
#include <string>
#include <vector>

#include "host/database/Database.h"
#include "host/history/CallHistory.h"
#include "host/history/CallKey.h"
#include "host/history/CallStatistics.h"
#include "host/history/FilterText.h"

namespace {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr const char* kLine = "2001";

/// Prints the median and the maximum of the durations of the work, and the processor time of one run.
void measure(const std::string& name, int runs, const std::function<std::size_t()>& work) {
    std::vector<Milliseconds> times;
    const std::clock_t processorBegin = std::clock();
    std::size_t found = 0;
    for (int run = 0; run < runs; ++run) {
        const auto begin = Clock::now();
        found = work();
        times.push_back(Clock::now() - begin);
    }
    std::sort(times.begin(), times.end());
    const double processor = 1000.0 * static_cast<double>(std::clock() - processorBegin) / CLOCKS_PER_SEC;
    std::printf("%-70s %8.2f ms %8.2f ms %8.2f ms %7zu\n", name.c_str(), times[times.size() / 2].count(),
                times.back().count(), processor / runs, found);
}

std::string textOf(const host::FilterText::Parameters& parameters) {
    std::string text;
    for (const auto& [name, value] : parameters) {
        text += (text.empty() ? "" : "&") + name + '=' + value;
    }
    return text;
}

class Benchmark {
public:
    explicit Benchmark(const std::string& data) : m_database(data + "/journal.db") {
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
        measure("page " + textOf(parameters), 20, [&] { return m_history.page(query).value().calls.size(); });
    }

    void count(const std::string& name, std::optional<host::CallGrouping> by) {
        host::StatisticsQuery query{{}, by, m_zone};
        query.filter.since = m_now - std::chrono::days(365);
        measure("statistics of a year" + name, 5,
                [&] { return static_cast<std::size_t>(m_statistics.of(query, m_now).value().totals.calls); });
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
        if (count != 2) {
            std::fputs("usage: history_benchmark DATA\n", stderr);
            return 2;
        }
        Benchmark benchmark(arguments[1]);
        std::printf("%-70s %11s %11s %11s %7s\n", "", "median", "greatest", "processor", "calls");
        benchmark.pages();
        benchmark.statistics();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    return 0;
}
