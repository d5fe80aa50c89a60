#include <functional>
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include "journalservice/ObserverNotifier.h"
#include "platform/texts/SoftwareTypes.h"
#include "tests/support/CapturedLog.h"
#include "tests/support/FakeJournalService.h"
#include "tests/support/RecordingObserver.h"
#include "tests/support/Table.h"

namespace journaltest {
namespace {

using Ifc = ObserverNotifierIfc;
using Observer = JournalServiceObserverIfc;

template <typename Item>
Item itemWithId(const std::string& entryId) {
    Item item;
    item.setEntryId(entryId);
    return item;
}

/// Returns the callbacks since the last call: counts, and the item, entry id and action of each update:
/// "missedCount(7); missed(m1, 17, 2)".
std::string heardBy(RecordingObserver& observer) {
    std::string text = observer.heard();
    observer.clear();
    return text;
}

/// A notifier and a journal with two dialled entries and two callbacks.
class Notifier : public testing::Test {
protected:
    Notifier() {
        notifier.init(&journal, softwaretypes::qorvex);
        journal.lists.dialled = {itemWithId<DialledCallItem>("newest"), itemWithId<DialledCallItem>("older")};
        journal.lists.callBacks = {itemWithId<CallBackItem>("b1"), itemWithId<CallBackItem>("b2")};
    }
    /// Subscribes and clears the callbacks of the subscription.
    void subscribeQuietly(RecordingObserver& observer) {
        ASSERT_TRUE(notifier.subscribe(&observer, {}));
        observer.clear();
    }

    FakeJournalService journal;
    ObserverNotifier notifier;
};

const auto kMissed = itemWithId<MissedCallItem>("m1");
const auto kDialled = itemWithId<DialledCallItem>("d1");

const struct {
    const char* heard;
    std::function<void(Ifc&)> update;
} kUpdates[] = {
    {"missedCount(0); missed(-, -, 3)", [](Ifc& n) { n.updateMissedCallCountAndCalls(); }},
    {"missedCount(7); missed(-, 17, 2)", [](Ifc& n) { n.updateMissedCallCountAndCalls(7U, "17"); }},
    {"dialled(d1, 17, 1)", [](Ifc& n) { n.updateDialledCalls(kDialled, "17", Observer::eItemUpdated); }},
    {"received(-, -, 4)", [](Ifc& n) { n.updateReceivedCalls(Observer::eListCleared); }},
    {"forwarded(-, -, 3)", [](Ifc& n) { n.updateForwardedCalls(); }},
    {"callBacks(-, b9, 2); callBacksCount(2)", [](Ifc& n) { n.updateCallbacksAndCount("b9"); }},
};

TEST_F(Notifier, NotifiesEveryObserverAndReadsNoListWithoutObservers) {
    for (const auto& row : kUpdates) {
        row.update(notifier);
    }
    EXPECT_TRUE(journal.calls().empty());

    RecordingObserver first;
    RecordingObserver second;
    subscribeQuietly(first);
    subscribeQuietly(second);
    for (const auto& row : kUpdates) {
        row.update(notifier);
        EXPECT_EQ(heardBy(first), row.heard);
        EXPECT_EQ(heardBy(second), row.heard);
    }
}

TEST_F(Notifier, IncludesForwardedCallsInAllListsOnSipPhonesOnly) {
    RecordingObserver observer;
    subscribeQuietly(observer);
    for (const std::string type : {"Norlith SIP", "Norlith Qorvex", "norlith sip", "Norlith SIP ", ""}) {
        notifier.init(&journal, type);
        notifier.updateAll(7);
        const std::string forwarded = type == "Norlith SIP" ? "forwarded(-, -, 3); " : "";
        EXPECT_EQ(heardBy(observer),
                  "missedCount(7); missed(-, -, 3); dialled(newest, -, 3); received(-, -, 3); " + forwarded +
                      "callBacks(-, -, 3); callBacksCount(2)")
            << type;
    }
}

TEST_F(Notifier, CountsTheCallbacksForEachObserver) {
    RecordingObserver takesOneAway;
    RecordingObserver last;
    subscribeQuietly(takesOneAway);
    subscribeQuietly(last);
    takesOneAway.setDuring([this](const Callback&) { journal.lists.callBacks.pop_back(); });
    notifier.updateCallbackCount();
    EXPECT_EQ(heardBy(takesOneAway) + ", " + heardBy(last), "callBacksCount(2), callBacksCount(1)");
}

TEST_F(Notifier, ReportsTheStateToANewObserverOnly) {
    RecordingObserver first;
    RecordingObserver second;
    subscribeQuietly(first);
    auto viewed = kMissed;
    viewed.setViewed(true);
    journal.lists.missed = {kMissed, viewed, kMissed};
    notifier.subscribe(&second, kDialled);
    EXPECT_EQ(heardBy(second), "missedCount(2); dialled(d1, -, 3); callBacksCount(2)");
    EXPECT_EQ(heardBy(first), "");

    journal.lists = {};
    notifier.subscribe(&first, {});
    EXPECT_EQ(heardBy(first), "missedCount(0); dialled(-, -, 3)") << "an empty callback list is not reported";
}

// Subscriptions (+) and unsubscriptions (-), their results, and the observers of an update; "0" is a null
// observer.
TEST_F(Notifier, NotifiesTheSubscribedInTheirOrder) {
    for (const auto& row : table(3, R"(
a+ b+ c+ a+ a- | yes yes yes yes yes | bca
a+ a+          | yes yes             | aa
a+ a+ a-       | yes yes yes         | a
a+ a+ a- a- a- | yes yes yes yes no  |
a+ b- 0-       | yes no no           | a
0+             | no                  |
)")) {
        SCOPED_TRACE(row[0]);
        ObserverNotifier tested;
        std::string heard;
        const auto noted = [&heard](char name) { return [&heard, name](const Callback&) { heard += name; }; };
        RecordingObserver observers[] = {RecordingObserver(noted('a')), RecordingObserver(noted('b')),
                                         RecordingObserver(noted('c'))};
        std::string results;
        for (const std::string& step : split(row[0], ' ')) {
            Observer* observer = step[0] == '0' ? nullptr : &observers[step[0] - 'a'];
            const bool done = step[1] == '+' ? tested.subscribe(observer, {}) : tested.unsubscribe(observer);
            results += std::string(results.empty() ? "" : " ") + (done ? "yes" : "no");
        }
        heard.clear();
        tested.updateMissedCallCount(1);
        EXPECT_EQ(results, row[1]);
        EXPECT_EQ(heard, row[2]);
    }
}

TEST_F(Notifier, GoesOnWhenAnObserverOrTheJournalThrows) {
    RecordingObserver bad([](const Callback&) { throw std::runtime_error("out of paper"); });
    RecordingObserver good;
    EXPECT_TRUE(notifier.subscribe(&bad, {}));
    bad.clear();
    subscribeQuietly(good);
    for (int round = 0; round < 2; ++round) {
        notifier.updateMissedCallCountAndCalls(1U, "17");
        EXPECT_EQ(heardBy(bad), "missedCount(1)");
        EXPECT_EQ(heardBy(good), "missedCount(1); missed(-, 17, 2)");
        bad.setDuring([](const Callback&) { throw 42; });
    }
    EXPECT_TRUE(CapturedLog::contains("out of paper")) << CapturedLog::dump();
    EXPECT_TRUE(notifier.unsubscribe(&bad)) << "no lock is left behind";

    journal.setDuring([] { throw std::runtime_error("no list today"); });
    notifier.updateCallbacksAndCount("b1");
    EXPECT_EQ(heardBy(good), "callBacks(-, b1, 2)");
    EXPECT_TRUE(CapturedLog::contains("no list today"));
}

}  // namespace
}  // namespace journaltest
