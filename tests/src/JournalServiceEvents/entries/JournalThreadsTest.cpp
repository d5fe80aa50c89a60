// Everything at once: observers come and go, calls are filed in all lists, viewed, aged and deleted, and the lists are
// loaded, while each observer reads all lists inside each callback and the switch does inside each request. Nothing may
// block (a thread that waits for ever ends with the test's time limit), and in the end everybody must agree.

#include <atomic>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/CapturedLog.h"
#include "tests/support/EntriesFixture.h"

namespace journaltest {
namespace {

constexpr int kRounds = 100;

/// Keeps the last count that it heard. What it hears is what it reads: the lists do not change between a change and the end
/// of its announcement.
class CountingObserver {
public:
    explicit CountingObserver(ListsReader& journal) : m_journal(journal) {}

    int lastCount = -1;
    int wrongCounts = 0;
    RecordingObserver observer{[this](const Callback& callback) {
        readAllLists(m_journal);
        if (callback.event == Callback::Event::eMissedCallsCountUpdate) {
            std::deque<MissedCallItem> missed;
            m_journal.getMissedCallList(missed);
            lastCount = static_cast<int>(callback.count);
            wrongCounts +=
                journal::JournalLists::getUnviewedMissedCallsCount(missed) != static_cast<unsigned>(lastCount)
                    ? 1
                    : 0;
        }
    }};

private:
    ListsReader& m_journal;
};

class JournalThreads : public testing::Test {
protected:
    JournalThreads() {
        CapturedLog::switchOff();  // its lock would order the threads
        rig.phoneIs(softwareTypes::sip, 2);
        rig.load();
        rig.notifier.unsubscribe(&rig.observer);
    }

    static std::string party(int round) { return "47" + std::to_string(round % 7); }

    template <typename Item>
    void file(int thread, int round) {
        typename Filing<Item>::Details details;
        details.callId = std::to_string(thread * 10000 + round);
        details.remoteParty = party(round + thread);
        details.timeSec = FakeClock::kStart + round;
        if constexpr (std::is_same_v<Item, DialledCallItem>) {
            details.dialledParty = details.remoteParty;
        }
        rig.file<Item>(details);
    }
    void fileInAll(int thread, int round) {
        file<MissedCallItem>(thread, round);
        file<ReceivedCallItem>(thread, round);
        file<DialledCallItem>(thread, round);
        file<ForwardedCallItem>(thread, round);
    }

    template <typename Item>
    std::string someEntryId(int round) {
        const auto items = rig.items<Item>();
        return items.empty() ? "nobody" : items[static_cast<std::size_t>(round) % items.size()].getEntryId();
    }
    void view(int round) {
        rig.lists.setMissedCallListAsViewed(
            {someEntryId<MissedCallItem>(round), someEntryId<MissedCallItem>(round + 3)});
        rig.lists.ageMissedCall(someEntryId<MissedCallItem>(round + 1));
    }
    void erase(int round) {
        rig.lists.deleteMissedCall(someEntryId<MissedCallItem>(round), false);
        rig.lists.deleteDialledCall(someEntryId<DialledCallItem>(round));
        rig.lists.deleteReceivedCallList({someEntryId<ReceivedCallItem>(round)});
        rig.lists.deleteForwardedCall(someEntryId<ForwardedCallItem>(round));
        rig.entries.deleteMissedEntryOf(party(round), "");
        if (round % 20 == 19) {
            rig.lists.deleteDialledCallList();
            rig.lists.deleteReceivedCallList();
        }
    }
    void subscribeAndLeave(int round) {
        auto observer = std::make_unique<CountingObserver>(rig.reader);
        {
            const journal::JournalLists::Change change(rig.lists);
            rig.notifier.subscribe(&observer->observer, rig.lists.getFrontDialledCall());
        }
        if (round % 10 == 0) {
            stayed.push_back(std::move(observer));
        } else {
            rig.notifier.unsubscribe(&observer->observer);
        }
    }

    EntriesFixture rig;
    std::vector<std::unique_ptr<CountingObserver>> stayed;
};

TEST_F(JournalThreads, AgreeInTheEndWhateverTheyDidAtOnce) {
    const std::vector<std::function<void(int)>> works{
        [this](int round) { fileInAll(1, round); },
        [this](int round) { fileInAll(2, round); },
        [this](int round) { view(round); },
        [this](int round) { erase(round); },
        [this](int round) { subscribeAndLeave(round); },
        [this](int /*round*/) { rig.load(); },
    };
    std::atomic<bool> go{false};
    std::vector<std::thread> threads;
    for (const auto& work : works) {
        threads.emplace_back([&go, &work] {
            while (!go) {
                std::this_thread::yield();
            }
            for (int round = 0; round < kRounds; ++round) {
                work(round);
            }
        });
    }
    go = true;
    for (std::thread& thread : threads) {
        thread.join();
    }

    const auto unviewed = static_cast<int>(rig.lists.getUnviewedMissedCallsCount());
    ASSERT_FALSE(stayed.empty());
    for (const auto& each : stayed) {
        EXPECT_EQ(each->lastCount, unviewed);
        EXPECT_EQ(each->wrongCounts, 0);
    }
    EXPECT_EQ(rig.listContents(), rig.databaseContents());
}

}  // namespace
}  // namespace journaltest
