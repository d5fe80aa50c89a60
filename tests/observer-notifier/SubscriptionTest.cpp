#include "tests/observer-notifier/NotifierFixture.h"

namespace journaltest {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Subscription = Notifier;

TEST_F(Subscription, TellsTheUnviewedMissedCallsAndTheLastDialledEntry) {
    startAs(softwareTypes::qorvex);
    journal.lists.missed = {missed("m1", false), missed("m2", true), missed("m3", false)};
    RecordingObserver observer;
    const auto newest = dialled("d1", {"4711", "4712"});

    EXPECT_TRUE(notifier.subscribe(&observer, newest));

    EXPECT_THAT(observer.texts(),
                ElementsAre("missedCallsCountUpdate(2)", "dialledCallsUpdate(item d1, entryId -, action 3)"));
    EXPECT_TRUE(observer.callbacks().back().as<DialledCallItem>().sameContent(newest));
}

TEST_F(Subscription, TellsTheNumberOfCallbacksWhenThereAreAny) {
    startAs(softwareTypes::qorvex);
    journal.lists.callBacks = {itemWithId<CallBackItem>("b1"), itemWithId<CallBackItem>("b2")};
    RecordingObserver observer;
    notifier.subscribe(&observer, {});
    EXPECT_THAT(observer.texts(),
                ElementsAre("missedCallsCountUpdate(0)", "dialledCallsUpdate(item -, entryId -, action 3)",
                            "callBacksCountUpdate(2)"));
}

TEST_F(Subscription, TellsTheNewObserverOnly) {
    startAs(softwareTypes::qorvex);
    RecordingObserver first;
    RecordingObserver second;
    subscribeQuietly(first);
    notifier.subscribe(&second, {});
    EXPECT_THAT(first.texts(), IsEmpty());
}

TEST_F(Subscription, OfNobodyIsRefused) {
    startAs(softwareTypes::qorvex);
    EXPECT_FALSE(notifier.subscribe(nullptr, dialled("d1", {"4711"})));
    notifier.updateAll(0);  // calls through whatever was subscribed
    EXPECT_THAT(journal.calls(), IsEmpty());
}

TEST_F(Subscription, TwiceBringsEverythingTwiceUntilOneIsRemoved) {
    startAs(softwareTypes::qorvex);
    RecordingObserver observer;
    subscribeQuietly(observer);
    subscribeQuietly(observer);

    notifier.updateMissedCallCount(1);
    EXPECT_THAT(observer.texts(), ElementsAre("missedCallsCountUpdate(1)", "missedCallsCountUpdate(1)"));

    observer.clear();
    EXPECT_TRUE(notifier.unsubscribe(&observer));
    notifier.updateMissedCallCount(2);
    EXPECT_THAT(observer.texts(), ElementsAre("missedCallsCountUpdate(2)"));

    observer.clear();
    EXPECT_TRUE(notifier.unsubscribe(&observer));
    EXPECT_FALSE(notifier.unsubscribe(&observer));
    notifier.updateMissedCallCount(3);
    EXPECT_THAT(observer.texts(), IsEmpty());
}

TEST_F(Subscription, ThatWasNeverMadeCannotBeRemoved) {
    startAs(softwareTypes::qorvex);
    RecordingObserver subscribed;
    RecordingObserver stranger;
    subscribeQuietly(subscribed);
    EXPECT_FALSE(notifier.unsubscribe(&stranger));
    EXPECT_FALSE(notifier.unsubscribe(nullptr));
    notifier.updateMissedCallCount(1);
    EXPECT_EQ(subscribed.count(), 1U);
}

TEST_F(Subscription, RemovedLeavesTheOthersInTheirOrder) {
    startAs(softwareTypes::qorvex);
    std::vector<int> order;
    RecordingObserver first([&](const Callback&) { order.push_back(1); });
    RecordingObserver second([&](const Callback&) { order.push_back(2); });
    RecordingObserver third([&](const Callback&) { order.push_back(3); });
    subscribeQuietly(first);
    subscribeQuietly(second);
    subscribeQuietly(third);
    notifier.subscribe(&first, {});
    notifier.unsubscribe(&first);

    order.clear();
    notifier.updateMissedCallCount(1);
    EXPECT_THAT(order, ElementsAre(2, 3, 1));
}

}  // namespace
}  // namespace journaltest
