// Everything at once: observers come and go, calls are filed, viewed, aged and deleted, the lists are loaded, and each
// observer reads all lists inside each callback while the switch reads them inside each request. Nothing may block, and in
// the end everybody must agree: the lists with the database, and each observer that stayed with the number of unviewed
// calls. A thread that waits for ever ends with the test's time limit. Run it under the thread sanitizer too.

#include <atomic>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "tests/entry-creation/EntryRig.h"
#include "tests/support/CapturedLog.h"

namespace journaltest {
namespace {

constexpr int kRounds = 100;

/// Keeps the last count that it heard, and reads every list whenever it hears something. What it hears is what it
/// reads: the lists do not change between a change and the end of its announcement.
class CountingObserver final : public JournalServiceObserverIfc {
public:
    explicit CountingObserver(ListsReader& journal) : m_journal(journal) {}
    virtual ~CountingObserver() = default;

    [[nodiscard]] int lastCount() const { return m_lastCount; }
    [[nodiscard]] int wrongCounts() const { return m_wrongCounts; }

    void missedCallsCountUpdate(int count) override {
        std::deque<MissedCallItem> missed;
        m_journal.getMissedCallList(missed);
        if (journal::JournalLists::getUnviewedMissedCallsCount(missed) != static_cast<unsigned>(count)) {
            ++m_wrongCounts;
        }
        m_lastCount = count;
    }
    void missedCallsUpdate(MissedCallItem, std::string, ActionType) override { readAllLists(m_journal); }
    void dialledCallsUpdate(DialledCallItem, std::string, ActionType) override { readAllLists(m_journal); }
    void receivedCallsUpdate(ReceivedCallItem, std::string, ActionType) override { readAllLists(m_journal); }
    void forwardedCallsUpdate(ForwardedCallItem, std::string, ActionType) override {
        readAllLists(m_journal);
    }
    void callBacksUpdate(CallBackItem, std::string, ActionType) override { readAllLists(m_journal); }
    void callBacksCountUpdate(int) override { readAllLists(m_journal); }

private:
    ListsReader& m_journal;
    // Guarded by the notifier's lock, as every callback is.
    int m_lastCount = -1;
    int m_wrongCounts = 0;
};

class JournalThreads : public testing::Test {
protected:
    JournalThreads() {
        CapturedLog::switchOff();  // its lock would order the threads
        rig.phoneIs(softwareTypes::sip, 2);
        rig.settings.change([](journal::SettingValues& values) { values.m_serverBasedFeatures = true; });
        for (int index = 0; index < 40; ++index) {
            rig.database.addRow(CallListDatabaseAdapterHelper::DAS_CALLLOGCALLBACKS,
                                callBackOf("c" + std::to_string(index), "1", "t"));
        }
        rig.load();
        rig.notifier.unsubscribe(&rig.observer);
    }

    static std::string party(int round) { return "47" + std::to_string(round % 7); }

    template <typename Details>
    void file(int thread, int round) {
        Details details;
        details.callId = std::to_string(thread * 10000 + round);
        details.remoteParty = party(round + thread);
        details.timeSec = FakeClock::kStart + round;
        if constexpr (std::is_same_v<Details, journal::DialledEntryDetails>) {
            details.dialledParty = details.remoteParty;
        }
        rig.file(details);
    }

    void fileCalls(int thread) {
        for (int round = 0; round < kRounds; ++round) {
            file<journal::MissedEntryDetails>(thread, round);
            file<journal::ReceivedEntryDetails>(thread, round);
            file<journal::DialledEntryDetails>(thread, round);
            if (round % 5 == 0) {
                file<journal::ForwardedEntryDetails>(thread, round);
                rig.time.advance(2);
            }
        }
    }

    template <typename Item>
    std::string someEntryId(int round) {
        const auto items = rig.items<Item>();
        return items.empty() ? "nobody" : items[static_cast<std::size_t>(round) % items.size()].getEntryId();
    }

    void view() {
        for (int round = 0; round < kRounds; ++round) {
            rig.lists.setMissedCallListAsViewed(
                {someEntryId<MissedCallItem>(round), someEntryId<MissedCallItem>(round + 3)});
            rig.lists.ageMissedCall(someEntryId<MissedCallItem>(round + 1));
        }
    }

    void erase() {
        for (int round = 0; round < kRounds; ++round) {
            rig.lists.deleteMissedCall(someEntryId<MissedCallItem>(round), false);
            rig.lists.deleteDialledCall(someEntryId<DialledCallItem>(round));
            rig.lists.deleteReceivedCallList({someEntryId<ReceivedCallItem>(round)});
            rig.lists.deleteForwardedCall(someEntryId<ForwardedCallItem>(round));
            rig.lists.deleteCallBack(someEntryId<CallBackItem>(round));
            rig.entries.deleteMissedEntryOf(party(round), "");
            rig.lists.deleteCalls({someEntryId<MissedCallItem>(round), someEntryId<ReceivedCallItem>(round)},
                                  false);
            if (round % 20 == 19) {
                rig.lists.deleteDialledCallList();
                rig.lists.deleteReceivedCallList();
            }
        }
    }

    void load() {
        for (int round = 0; round < kRounds / 2; ++round) {
            rig.load();
        }
    }

    void subscribeAndLeave() {
        for (int round = 0; round < kRounds; ++round) {
            auto observer = std::make_unique<CountingObserver>(rig.reader);
            {
                const journal::JournalLists::Change change(rig.lists);
                rig.notifier.subscribe(observer.get(), rig.lists.getFrontDialledCall());
            }
            if (round % 10 == 0) {
                stayed.push_back(std::move(observer));
            } else {
                rig.notifier.unsubscribe(observer.get());
            }
        }
    }

    EntryRig rig;
    std::vector<std::unique_ptr<CountingObserver>> stayed;
};

TEST_F(JournalThreads, AgreeInTheEndWhateverTheyDidAtOnce) {
    CountingObserver first(rig.reader);
    rig.notifier.subscribe(&first, {});

    std::atomic<bool> go{false};
    std::vector<std::thread> threads;
    const auto run = [&](const std::function<void()>& work) {
        threads.emplace_back([&go, work] {
            while (!go) {
                std::this_thread::yield();
            }
            work();
        });
    };
    run([this] { fileCalls(1); });
    run([this] { fileCalls(2); });
    run([this] { view(); });
    run([this] { erase(); });
    run([this] { load(); });
    run([this] { subscribeAndLeave(); });
    go = true;
    for (std::thread& thread : threads) {
        thread.join();
    }

    const auto unviewed = static_cast<int>(rig.lists.getUnviewedMissedCallsCount());
    EXPECT_EQ(first.lastCount(), unviewed);
    EXPECT_EQ(first.wrongCounts(), 0);
    ASSERT_EQ(stayed.size(), static_cast<std::size_t>(kRounds) / 10);
    for (const auto& observer : stayed) {
        EXPECT_EQ(observer->lastCount(), unviewed);
        EXPECT_EQ(observer->wrongCounts(), 0);
    }
    EXPECT_EQ(rig.listContents(), rig.databaseContents());
}

}  // namespace
}  // namespace journaltest
