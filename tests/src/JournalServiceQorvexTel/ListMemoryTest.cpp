// A journal whose lists are loaded at first need, and unloaded again.

#include <gtest/gtest.h>

#include <atomic>
#include <deque>
#include <string>
#include <thread>

#include "tests/support/RecordingObserver.h"
#include "tests/support/SimulatedPhone.h"

namespace journaltest {
namespace {

class ListMemory : public testing::Test {
protected:
    void starts() {
        phone.starts();
        phone.service().loadListsAtFirstNeed();
        phone.database.forgetRequests();
        EXPECT_TRUE(phone.service().subscribeForJournalEvents(&observer));
    }
    void fillsTheDatabase() {
        SimulatedPhone earlier;
        earlier.plays(
            "misses 1 4711:Ann; misses 2 4712; answers 3 4713; clears 3; reaches 4 4714 4714; clears 4");
        for (const auto& item : earlier.missed()) {
            phone.database.addRow(CallListDatabaseAdapterHelper::DAS_CALLLOGMISSEDCALLS, item);
        }
    }
    [[nodiscard]] std::size_t reads() {
        const std::size_t count = phone.database.documents().size();
        phone.database.forgetRequests();
        return count;
    }
    [[nodiscard]] std::size_t listed() {
        std::deque<MissedCallItem> missed;
        phone.service().getMissedCallList(missed);
        return missed.size();
    }

    SimulatedPhone phone;
    RecordingObserver observer;
};

TEST_F(ListMemory, TheFirstSubscriptionDoesNotLoadAndAReadDoes) {
    fillsTheDatabase();
    starts();
    EXPECT_FALSE(phone.service().areListsLoaded());
    EXPECT_EQ(reads(), 0U);
    EXPECT_EQ(listed(), 2U);
    EXPECT_TRUE(phone.service().areListsLoaded());
    EXPECT_GT(reads(), 0U);
    EXPECT_EQ(listed(), 2U);
    EXPECT_EQ(reads(), 0U) << "they are in memory";
    EXPECT_TRUE(phone.service().unloadLists());
    EXPECT_FALSE(phone.service().areListsLoaded());
    RecordingObserver client;
    EXPECT_TRUE(phone.service().subscribeForJournalEvents(&client));
    EXPECT_EQ(client.heard().substr(0, 14), "missedCount(2)");
    EXPECT_TRUE(phone.service().unsubscribeForJournalEvents(&client));
}

// Every step on a journal that keeps its lists, and on one that unloads them after each step.
TEST_F(ListMemory, UnloadingChangesNoResult) {
    const std::deque<std::string> script = {
        "misses 1 4711:Ann; passes 60",
        "misses 2 4712; passes 60",
        "misses 3 4711:Ann; passes 60",
        "answers 4 4711:Ann; passes 5; clears 4",
        "reaches 5 4712 4712; passes 7; clears 5",
        "answers 6 4713",
        "passes 3; clears 6",
        "reaches 7 4712 4712; clears 7",
        "diverts 8 4715 2001 4720",
        "misses 9 4712",
    };
    SimulatedPhone keeping;
    RecordingObserver other;
    keeping.starts();
    EXPECT_TRUE(keeping.service().subscribeForJournalEvents(&other));
    starts();
    for (const std::string& step : script) {
        keeping.plays(step);
        phone.plays(step);
        EXPECT_TRUE(phone.service().unloadLists());
        EXPECT_FALSE(phone.service().areListsLoaded()) << step;
        EXPECT_EQ(phone.journal(), keeping.journal()) << step;
        EXPECT_EQ(observer.heard(), other.heard()) << step;
        EXPECT_TRUE(phone.service().unloadLists());
    }
    const auto each = [this, &keeping](auto&& change) {
        EXPECT_TRUE(change(keeping.service()));
        EXPECT_TRUE(change(phone.service()));
        EXPECT_TRUE(phone.service().unloadLists());
        EXPECT_EQ(phone.journal(), keeping.journal());
    };
    const std::string missed = keeping.missed().front().getEntryId();
    const std::string newest = phone.missed().front().getEntryId();
    EXPECT_EQ(missed, newest);
    EXPECT_TRUE(phone.service().unloadLists());
    each([&](auto& service) { return service.setMissedCallListAsViewed({missed}); });
    each([&](auto& service) { return service.deleteMissedCall(missed, false); });
    each([](auto& service) { return service.deleteReceivedCallList(); });
    DialledCallItem last;
    EXPECT_TRUE(phone.service().getLastDialledNumber(last));
    EXPECT_EQ(last.getDialledCallInfoList().front().getNumber(), "4712");
    EXPECT_EQ(observer.heard(), other.heard());
}

TEST_F(ListMemory, AChangeThatTheDatabaseRefusesKeepsTheLists) {
    fillsTheDatabase();
    starts();
    EXPECT_EQ(listed(), 2U);
    phone.database.setFailing(true);
    phone.plays("misses 21 4721");
    EXPECT_FALSE(phone.service().unloadLists());
    EXPECT_EQ(listed(), 3U);
    phone.database.setFailing(false);
    EXPECT_TRUE(phone.service().unloadLists()) << "the change is stored now";
    EXPECT_EQ(listed(), 3U);
}

TEST_F(ListMemory, AReadThatFailsIsTriedAgain) {
    fillsTheDatabase();
    starts();
    phone.database.setFailing(true);
    EXPECT_EQ(listed(), 0U);
    EXPECT_FALSE(phone.service().areListsLoaded());
    phone.database.setFailing(false);
    EXPECT_EQ(listed(), 2U);
}

TEST_F(ListMemory, AJournalThatKeepsItsListsDoesNotUnloadThem) {
    fillsTheDatabase();
    phone.starts();
    EXPECT_TRUE(phone.service().subscribeForJournalEvents(&observer));
    EXPECT_FALSE(phone.service().unloadLists());
    EXPECT_TRUE(phone.service().areListsLoaded());
}

TEST_F(ListMemory, NoReaderSeesAListThatIsUnloadedMeanwhile) {
    fillsTheDatabase();
    starts();
    std::atomic<bool> ends = false;
    std::atomic<unsigned> wrong = 0;
    std::thread reader([&] {
        while (!ends) {
            wrong += listed() == 2U ? 0 : 1;
        }
    });
    for (int round = 0; round < 200; ++round) {
        EXPECT_TRUE(phone.service().unloadLists());
    }
    ends = true;
    reader.join();
    EXPECT_EQ(wrong, 0U);
}

}  // namespace
}  // namespace journaltest
