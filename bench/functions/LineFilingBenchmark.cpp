// The filing of calls by one thread and by several, each for its own lines, in a new database on the disk
// ($TMPDIR, else /tmp) whose log is flushed as in a running server:
//   line_filing_benchmark [--benchmark_...]
// "fileCalls/LINES/.../threads:THREADS" gives the calls a second of all threads together (items_per_second),
// and of the durations of one thread's filings the median and the 99th percentile in microseconds (the mean
// over the threads).

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <deque>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "bench/calls/CallPlan.h"
#include "host/data/SqliteDataAccess.h"
#include "host/database/Database.h"
#include "platform/journal-library/CallListDatabaseAdapterHelper.h"
#include "tests/support/ItemBuilders.h"
#include "tests/support/TemporaryDirectory.h"

namespace {

using Clock = std::chrono::steady_clock;
using Helper = CallListDatabaseAdapterHelper;

constexpr std::size_t kParties = 2000;

/// The journals of so many lines with one database.
class Lines {
public:
    explicit Lines(std::size_t count) {
        for (std::size_t number = 0; number < count; ++number) {
            m_lines.emplace_back(m_database, std::to_string(2000 + number));
        }
    }

    [[nodiscard]] std::size_t size() const noexcept { return m_lines.size(); }

    void carryOut(std::size_t line, const std::string& request) {
        if (m_lines[line].processRequest(request) == Helper::FAILED) {
            throw std::runtime_error("a call is not filed");
        }
    }

private:
    TemporaryDirectory m_directory;
    host::Database m_database{m_directory.path() / "journal.db"};
    std::deque<host::SqliteDataAccess> m_lines;
};

std::string twoDigits(std::size_t number) {
    return (number < 10 ? "0" : "") + std::to_string(number);
}

/// The request that files the `number`th call of a line, a missed one.
std::string requestOf(std::size_t line, std::size_t number) {
    const std::size_t second = number % 60;
    const std::size_t minute = number / 60 % 60;
    const std::string time = "2026-11-" + twoDigits(1 + number / 86400 % 28) + "T" +
                             twoDigits(number / 3600 % 24) + ":" + twoDigits(minute) + ":" +
                             twoDigits(second) + "Z";
    const std::size_t party = (line + number * 7) % kParties;
    auto item = journaltest::itemOf<MissedCallItem>(time + "00000001", "",
                                                    {{bench::CallPlan::numberOf(party), time}});
    item.setSurname(bench::CallPlan::nameOf(party));
    return Helper::addXMLHeaderFooter(
        Helper::createXMLField(Helper::REASONFORMESSAGE, Helper::WRITEREQUEST) +
            Helper::createXMLElement(Helper::ENTRY,
                                     Helper::createXMLMissedCallItemBody(item, Helper::WRITEREQUEST)),
        Helper::DAS_CALLLOGMISSEDCALLS);
}

struct Filing {
    std::size_t line = 0;
    std::string request;
};

/// The filings of one thread, for its own lines one after the other.
std::vector<Filing> filingsOf(std::size_t thread, std::size_t threads, std::size_t lines, std::size_t count) {
    const std::size_t own = std::max<std::size_t>(lines / threads, 1);
    std::vector<Filing> filings;
    for (std::size_t number = 0; number < count; ++number) {
        const std::size_t line = (thread * own + number % own) % lines;
        filings.push_back({line, requestOf(line, number / own)});
    }
    return filings;
}

double microsecondsAt(std::vector<double>& sorted, double part) {
    return sorted.at(static_cast<std::size_t>(part * static_cast<double>(sorted.size() - 1)));
}

void fileCalls(benchmark::State& state) {
    static std::unique_ptr<Lines> lines;
    const auto lineCount = static_cast<std::size_t>(state.range(0));
    if (state.thread_index() == 0) {
        lines = std::make_unique<Lines>(lineCount);
    }
    const auto filings =
        filingsOf(static_cast<std::size_t>(state.thread_index()), static_cast<std::size_t>(state.threads()),
                  lineCount, static_cast<std::size_t>(state.max_iterations));
    std::vector<double> durations;
    durations.reserve(filings.size());
    auto filing = filings.begin();
    for (auto _ : state) {
        const auto begin = Clock::now();
        lines->carryOut(filing->line, filing->request);
        durations.push_back(std::chrono::duration<double, std::micro>(Clock::now() - begin).count());
        ++filing;
    }
    std::sort(durations.begin(), durations.end());
    state.SetItemsProcessed(state.iterations());
    state.counters["p50_us"] =
        benchmark::Counter(microsecondsAt(durations, 0.5), benchmark::Counter::kAvgThreads);
    state.counters["p99_us"] =
        benchmark::Counter(microsecondsAt(durations, 0.99), benchmark::Counter::kAvgThreads);
    if (state.thread_index() == 0) {
        lines.reset();
    }
}

constexpr int kFilings = 16'384;

void manyThreads(benchmark::internal::Benchmark* benchmark) {
    benchmark->UseRealTime()->Unit(benchmark::kMicrosecond);
}

BENCHMARK(fileCalls)->Apply(manyThreads)->Arg(1)->Iterations(kFilings)->Threads(1);
BENCHMARK(fileCalls)->Apply(manyThreads)->Arg(1000)->Iterations(kFilings)->Threads(1);
BENCHMARK(fileCalls)->Apply(manyThreads)->Arg(1000)->Iterations(kFilings / 8)->Threads(8);
BENCHMARK(fileCalls)->Apply(manyThreads)->Arg(1000)->Iterations(kFilings / 32)->Threads(32);
BENCHMARK(fileCalls)->Apply(manyThreads)->Arg(1000)->Iterations(kFilings / 128)->Threads(128);

}  // namespace
