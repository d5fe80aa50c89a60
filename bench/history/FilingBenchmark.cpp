// Measures the filing of a call in databases of different sizes (docs/performance.md):
//   filing_benchmark DATA DATA     DATA was filled by tools/make-history; the first one is the small one
//
// Files calls in both in turn, so that other work of the machine slows both down, and in as many entries of
// each. The databases change.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <deque>
#include <exception>
#include <stdexcept>
#include <string>
#include <vector>

#include "host/data/SqliteDataAccess.h"
#include "host/database/Database.h"
#include "platform/journal-library/CallListDatabaseAdapterHelper.h"
#include "platform/journal-library/JournalServiceHelper.h"

namespace {

using Clock = std::chrono::steady_clock;
using Helper = CallListDatabaseAdapterHelper;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr int kCalls = 1000;

/// The missed entries with ten calls of one database; each filing adds a call to the next one.
class Filing {
public:
    explicit Filing(const std::string& data, std::size_t entries = 1000) : m_database(data + "/journal.db") {
        JournalServiceHelper::parseXMLMissedCallList(
            m_access.processRequest(Helper::readCallList(Helper::DAS_CALLLOGMISSEDCALLS)), m_items);
        std::erase_if(m_items, [](const MissedCallItem& item) {
            return item.getMissedCallInfoList().size() < MissedCallItem::kMaxOccurrences;
        });
        if (m_items.empty()) {
            throw std::runtime_error(data + " has no entry with ten calls");
        }
        m_items.resize(std::min(m_items.size(), entries));
    }

    [[nodiscard]] std::size_t entries() const { return m_items.size(); }

    void fileCall(int number) {
        MissedCallItem item = m_items.front();
        m_items.pop_front();
        auto calls = item.getMissedCallInfoList();
        calls.push_front(calls.front());
        calls.pop_back();
        const std::time_t begin = m_begin + number;
        std::string time(20, ' ');
        std::strftime(time.data(), time.size() + 1, "%Y-%m-%dT%H:%M:%SZ", std::gmtime(&begin));
        calls.front().setTimeAndDate(time);
        calls.front().setCallId(std::to_string(m_begin) + "-" + std::to_string(number));
        item.setMissedCallInfoList(calls);
        item.setEntryId(time + "00000001");
        const std::string request = Helper::addXMLHeaderFooter(
            Helper::createXMLField(Helper::REASONFORMESSAGE, Helper::WRITEREQUEST) +
                Helper::createXMLElement(Helper::ENTRY,
                                         Helper::createXMLMissedCallItemBody(item, Helper::WRITEREQUEST)),
            Helper::DAS_CALLLOGMISSEDCALLS);
        m_items.push_back(std::move(item));
        const auto sent = Clock::now();
        if (m_access.processRequest(request) == Helper::FAILED) {
            throw std::runtime_error("a call is not filed");
        }
        m_times.emplace_back(Clock::now() - sent);
    }

    [[nodiscard]] Milliseconds median() {
        std::sort(m_times.begin(), m_times.end());
        return m_times.at(m_times.size() / 2);
    }
    [[nodiscard]] Milliseconds mean() const {
        Milliseconds sum{};
        for (const Milliseconds time : m_times) {
            sum += time;
        }
        return sum / m_times.size();
    }

private:
    const std::time_t m_begin = std::time(nullptr);
    host::Database m_database;
    host::SqliteDataAccess m_access{m_database, "2001"};
    std::deque<MissedCallItem> m_items;
    std::vector<Milliseconds> m_times;
};

}  // namespace

int main(int count, char** arguments) {
    try {
        if (count != 3) {
            std::fputs("usage: filing_benchmark DATA DATA\n", stderr);
            return 2;
        }
        Filing small(arguments[1]);
        Filing large(arguments[2], small.entries());
        for (int number = 0; number < kCalls; ++number) {
            small.fileCall(number);
            large.fileCall(number);
        }
        for (Filing* each : {&small, &large}) {
            std::printf("filing a call: median %.3f ms, mean %.3f ms, %.0f calls/s\n", each->median().count(),
                        each->mean().count(), 1000.0 / each->median().count());
        }
        std::printf("%zu entries, %d calls in each database\n", small.entries(), kCalls);
        std::printf("ratio of the speeds: %.3f (median), %.3f (mean)\n", small.median() / large.median(),
                    small.mean() / large.mean());
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    return 0;
}
