// An item as text, the match of a contact, and the notification of observers.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <deque>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "bench/calls/CallPlan.h"
#include "host/presentation/ItemJson.h"
#include "journal-items/Contact.h"
#include "journal-items/ReceivedCallItem.h"
#include "journalservice/ObserverNotifier.h"
#include "platform/journal-library/CallListDatabaseAdapterHelper.h"
#include "platform/journal-library/DataResponse.h"
#include "platform/journal-library/JournalServiceHelper.h"
#include "platform/texts/SoftwareTypes.h"
#include "src/JournalServiceEvents/entries/ContactMatching.h"
#include "tests/support/FakeJournalService.h"
#include "tests/support/ItemBuilders.h"

namespace {

using Helper = CallListDatabaseAdapterHelper;

constexpr std::size_t kListLength = 1000;
constexpr const char* kTime = "2026-11-21T05:22:05Z";

/// An item of a party with so many calls.
ReceivedCallItem itemOf(std::size_t party, std::size_t calls) {
    const std::vector<journaltest::Occurrence> occurrences(calls, {bench::CallPlan::numberOf(party), kTime});
    auto item = journaltest::itemOf<ReceivedCallItem>(std::string(kTime) + "0000002A",
                                                      std::to_string(party + 1), occurrences);
    item.setSurname(bench::CallPlan::nameOf(party));
    return item;
}

std::deque<ReceivedCallItem> fullList() {
    std::deque<ReceivedCallItem> items;
    for (std::size_t party = 0; party < kListLength; ++party) {
        items.push_back(itemOf(party, 1));
    }
    return items;
}

/// The argument is the number of calls of the item.
void itemToJson(benchmark::State& state) {
    const ReceivedCallItem item = itemOf(17, static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) {
        benchmark::DoNotOptimize(host::jsonText(host::itemJson(item)));
    }
}
BENCHMARK(itemToJson)->Arg(1)->Arg(10);

void itemToXml(benchmark::State& state) {
    const ReceivedCallItem item = itemOf(17, static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) {
        benchmark::DoNotOptimize(Helper::createXMLReceivedCallItemBody(item, Helper::WRITEREQUEST));
    }
}
BENCHMARK(itemToXml)->Arg(1)->Arg(10);

/// The list document of the database, which the service reads at its start.
void listFromXml(benchmark::State& state) {
    journalxml::ListDocument document(Helper::DAS_CALLLOGRECEIVEDCALLS);
    for (const ReceivedCallItem& item : fullList()) {
        static_cast<void>(document.add(item));
    }
    const std::string xml = document.text();
    for (auto _ : state) {
        std::deque<ReceivedCallItem> items;
        JournalServiceHelper::parseXMLReceivedCallList(xml, items);
        benchmark::DoNotOptimize(items);
    }
}
BENCHMARK(listFromXml)->Unit(benchmark::kMicrosecond);

/// Finds the item of the last party of a full list.
void matchContact(benchmark::State& state) {
    const std::deque<ReceivedCallItem> items = fullList();
    Contact contact;
    contact.setSearchNumber(bench::CallPlan::numberOf(kListLength - 1));
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            std::find_if(items.begin(), items.end(), [&contact](const ReceivedCallItem& item) {
                return journal::contactMatchesReceivedCall(item, contact);
            }));
    }
}
BENCHMARK(matchContact)->Unit(benchmark::kMicrosecond);

class CountingObserver final : public JournalServiceObserverIfc {
public:
    virtual ~CountingObserver() = default;

    void missedCallsCountUpdate(int /*count*/) override { ++m_updates; }
    void missedCallsUpdate(MissedCallItem, std::string, ActionType) override { ++m_updates; }
    void dialledCallsUpdate(DialledCallItem, std::string, ActionType) override { ++m_updates; }
    void receivedCallsUpdate(ReceivedCallItem, std::string, ActionType) override { ++m_updates; }
    void forwardedCallsUpdate(ForwardedCallItem, std::string, ActionType) override { ++m_updates; }
    void callBacksUpdate(CallBackItem, std::string, ActionType) override { ++m_updates; }
    void callBacksCountUpdate(int /*count*/) override { ++m_updates; }

private:
    unsigned long m_updates = 0;
};

/// Reports one entry to observers. The argument is their number.
void notifyObservers(benchmark::State& state) {
    journaltest::FakeJournalService journal;
    ObserverNotifier notifier;
    notifier.init(&journal, softwaretypes::qorvex);
    std::vector<CountingObserver> observers(static_cast<std::size_t>(state.range(0)));
    for (CountingObserver& observer : observers) {
        notifier.subscribe(&observer, {});
    }
    const ReceivedCallItem item = itemOf(17, 10);
    for (auto _ : state) {
        notifier.updateReceivedCalls(item, "17", JournalServiceObserverIfc::eItemAdded);
    }
    for (CountingObserver& observer : observers) {
        notifier.unsubscribe(&observer);
    }
}
BENCHMARK(notifyObservers)->Arg(1)->Arg(100);

}  // namespace
