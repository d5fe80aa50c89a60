// The filing of a call in databases of different sizes.

#include "bench/history/FilingBenchmark.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <ctime>
#include <deque>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>

#include "host/data/SqliteDataAccess.h"
#include "host/database/Database.h"
#include "platform/journal-library/CallListDatabaseAdapterHelper.h"
#include "platform/journal-library/JournalServiceHelper.h"

namespace bench {

namespace {

using Helper = CallListDatabaseAdapterHelper;

/// The missed entries with ten calls of one database; each filing adds a call to the next one.
class Filing {
public:
    explicit Filing(const std::string& data) : m_database(data + "/journal.db") {
        JournalServiceHelper::parseXMLMissedCallList(
            m_access.processRequest(Helper::readCallList(Helper::DAS_CALLLOGMISSEDCALLS)), m_items);
        std::erase_if(m_items, [](const MissedCallItem& item) {
            return item.getMissedCallInfoList().size() < MissedCallItem::kMaxOccurrences;
        });
        if (m_items.empty()) {
            throw std::runtime_error(data + " has no entry with ten calls");
        }
    }

    /// Returns the request that adds a call to the next entry.
    [[nodiscard]] std::string nextRequest() {
        const int number = ++m_calls;
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
        std::string request = Helper::addXMLHeaderFooter(
            Helper::createXMLField(Helper::REASONFORMESSAGE, Helper::WRITEREQUEST) +
                Helper::createXMLElement(Helper::ENTRY,
                                         Helper::createXMLMissedCallItemBody(item, Helper::WRITEREQUEST)),
            Helper::DAS_CALLLOGMISSEDCALLS);
        m_items.push_back(std::move(item));
        return request;
    }

    void carryOut(const std::string& request) {
        if (m_access.processRequest(request) == Helper::FAILED) {
            throw std::runtime_error("a call is not filed");
        }
    }

private:
    const std::time_t m_begin = std::time(nullptr);
    host::Database m_database;
    host::SqliteDataAccess m_access{m_database, "2001"};
    std::deque<MissedCallItem> m_items;
    int m_calls = 0;
};

}  // namespace

void registerFiling(const std::string& data) {
    const auto filing = std::make_shared<Filing>(data);
    benchmark::RegisterBenchmark(("fileCall/" + data).c_str(),
                                 [filing](benchmark::State& state) {
                                     for (auto _ : state) {
                                         state.PauseTiming();
                                         const std::string request = filing->nextRequest();
                                         state.ResumeTiming();
                                         filing->carryOut(request);
                                     }
                                 })
        ->UseRealTime()
        ->Unit(benchmark::kMillisecond);
}

}  // namespace bench
