#include <stdexcept>

#include "tests/observer-notifier/NotifierFixture.h"
#include "tests/support/CapturedLog.h"

namespace journaltest {
namespace {

using testing::ElementsAre;

using BadObserver = Notifier;

TEST_F(BadObserver, DoesNotKeepTheOthersFromBeingTold) {
    startAs(softwareTypes::qorvex);
    RecordingObserver bad;
    RecordingObserver good;
    subscribeQuietly(bad);
    subscribeQuietly(good);
    bad.setDuring([](const Callback&) { throw std::runtime_error("out of paper"); });

    notifier.updateMissedCallCountAndCalls(1U, "17");

    EXPECT_THAT(bad.texts(), ElementsAre("missedCallsCountUpdate(1)"));
    EXPECT_THAT(good.texts(),
                ElementsAre("missedCallsCountUpdate(1)", "missedCallsUpdate(item -, entryId 17, action 2)"));
    EXPECT_TRUE(CapturedLog::contains("out of paper")) << CapturedLog::dump();
}

TEST_F(BadObserver, MayThrowAnything) {
    startAs(softwareTypes::qorvex);
    RecordingObserver bad;
    RecordingObserver good;
    subscribeQuietly(bad);
    subscribeQuietly(good);
    bad.setDuring([](const Callback&) { throw 42; });
    EXPECT_NO_THROW(notifier.updateAll(1));
    EXPECT_EQ(good.count(), 6U);
}

TEST_F(BadObserver, StaysSubscribedAndIsToldAgain) {
    startAs(softwareTypes::qorvex);
    RecordingObserver bad([](const Callback&) { throw std::runtime_error("not now"); });
    EXPECT_TRUE(notifier.subscribe(&bad, {}));
    bad.clear();
    bad.setDuring({});

    notifier.updateMissedCallCount(3);

    EXPECT_THAT(bad.texts(), ElementsAre("missedCallsCountUpdate(3)"));
    EXPECT_TRUE(notifier.unsubscribe(&bad));
}

TEST_F(BadObserver, DoesNotKeepTheLock) {
    startAs(softwareTypes::qorvex);
    RecordingObserver bad([](const Callback&) { throw std::runtime_error("mid-call"); });
    notifier.subscribe(&bad, {});
    notifier.updateAll(0);
    // Each of these would wait for ever if the lock had stayed taken.
    EXPECT_TRUE(notifier.unsubscribe(&bad));
    RecordingObserver next;
    EXPECT_TRUE(notifier.subscribe(&next, {}));
}

TEST_F(BadObserver, IsNotTheOnlyOneToThrowAndAJournalThatDoesIsSurvivedToo) {
    startAs(softwareTypes::qorvex);
    RecordingObserver observer;
    subscribeQuietly(observer);
    journal.setDuring([] { throw std::runtime_error("no list today"); });

    notifier.updateCallbacksAndCount("b1");

    EXPECT_THAT(observer.texts(), ElementsAre("callBacksUpdate(item -, entryId b1, action 2)"));
    EXPECT_TRUE(CapturedLog::contains("no list today"));
}

}  // namespace
}  // namespace journaltest
