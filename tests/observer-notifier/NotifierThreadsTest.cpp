// Under the thread sanitizer these find unguarded state; under every build they find a lock that is kept too long.

#include <atomic>
#include <memory>
#include <thread>

#include "tests/observer-notifier/NotifierFixture.h"
#include "tests/support/CapturedLog.h"

namespace journaltest {
namespace {

constexpr int kRounds = 300;

class NotifierThreads : public Notifier {
protected:
    void SetUp() override {
        CapturedLog::switchOff();  // its lock would order the threads
        startAs(softwareTypes::sip);
        journal.lists.missed = {missed("m1", false), missed("m2", true)};
        journal.lists.dialled = {dialled("d1", {"4711"})};
        journal.lists.callBacks = {itemWithId<CallBackItem>("b1")};
    }
};

/// An observer that nothing but the notifier's lock protects.
class UnguardedObserver final : public JournalServiceObserverIfc {
public:
    long calls = 0;

    virtual ~UnguardedObserver() = default;

    void missedCallsCountUpdate(int /*count*/) override { ++calls; }
    void missedCallsUpdate(MissedCallItem, std::string, ActionType) override { ++calls; }
    void dialledCallsUpdate(DialledCallItem, std::string, ActionType) override { ++calls; }
    void receivedCallsUpdate(ReceivedCallItem, std::string, ActionType) override { ++calls; }
    void forwardedCallsUpdate(ForwardedCallItem, std::string, ActionType) override { ++calls; }
    void callBacksUpdate(CallBackItem, std::string, ActionType) override { ++calls; }
    void callBacksCountUpdate(int /*count*/) override { ++calls; }
};

TEST_F(NotifierThreads, TellOneAtATimeWhileOthersSubscribe) {
    UnguardedObserver observer;
    notifier.subscribe(&observer, {});
    const long atSubscription = observer.calls;

    const auto tells = [this] {
        for (int round = 0; round < kRounds; ++round) {
            notifier.updateAllExceptCallbacks(1);
        }
    };
    std::thread first(tells);
    std::thread second(tells);
    std::thread third([this] {
        for (int round = 0; round < kRounds; ++round) {
            // Gone as soon as unsubscribe has returned: a late callback would be a use after free.
            const auto passing = std::make_unique<UnguardedObserver>();
            ASSERT_TRUE(notifier.subscribe(passing.get(), {}));
            ASSERT_TRUE(notifier.unsubscribe(passing.get()));
            ASSERT_EQ((passing->calls - 3) % 5, 0) << "an update was interrupted";
        }
    });
    first.join();
    second.join();
    third.join();

    ASSERT_TRUE(notifier.unsubscribe(&observer));
    EXPECT_EQ(observer.calls - atSubscription, 2L * kRounds * 5);
}

TEST_F(NotifierThreads, LetOneThreadReadListsInItsCallbacksWhileAnotherSubscribes) {
    RecordingObserver reader([this](const Callback&) { readAllLists(journal); });
    subscribeQuietly(reader);
    std::atomic<bool> subscribing{true};

    std::thread updating([&] {
        while (subscribing) {
            notifier.updateAll(1);
            reader.clear();
        }
        notifier.updateAll(1);
    });
    for (int round = 0; round < kRounds; ++round) {
        RecordingObserver passing([this](const Callback&) { readAllLists(journal); });
        ASSERT_TRUE(notifier.subscribe(&passing, {}));
        ASSERT_TRUE(notifier.unsubscribe(&passing));
    }
    subscribing = false;
    updating.join();

    EXPECT_EQ(reader.count(), 7U);
}

}  // namespace
}  // namespace journaltest
