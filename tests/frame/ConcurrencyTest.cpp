#include <array>
#include <atomic>
#include <cstddef>
#include <deque>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "tests/frame/TestPhone.h"
#include "tests/support/RecordingObserver.h"

namespace {

using journaltest::Callback;
using journaltest::party;
using journaltest::RecordingObserver;
using journaltest::TestPhone;

constexpr int kRounds = 150;

// Does to the journal, on a thread of its own, what clients do.
void workAsClient(TestPhone& phone, int seed) {
    JournalServiceIfc& journal = *phone.service;
    RecordingObserver observer([&journal](const Callback&) { journaltest::readAllLists(journal); });
    for (int round = 0; round < kRounds; ++round) {
        ASSERT_TRUE(journal.subscribeForJournalEvents(&observer));
        std::deque<MissedCallItem> missed;
        journal.getMissedCallList(missed);
        if (!missed.empty()) {
            journal.setMissedCallListAsViewed({missed.front().getEntryId()});
            journal.ageMissedCall(missed.back().getEntryId());
            if ((round + seed) % 5 == 0) {
                journal.deleteMissedCall(missed.back().getEntryId(), false);
            }
        }
        if ((round + seed) % 31 == 0) {
            journal.deleteAllCalls();
            journal.refreshCallLog();
        }
        ManageableData data;
        data.populate("missed-logging", "missed-logging", (round + seed) % 2 == 0 ? "0" : "1");
        phone.service->setData(data);
        ASSERT_TRUE(journal.unsubscribeForJournalEvents(&observer));
    }
}

void expectTheDatabaseToHold(const std::deque<MissedCallItem>& missed, TestPhone& phone) {
    const auto rows =
        phone.database.rows<MissedCallItem>(CallListDatabaseAdapterHelper::DAS_CALLLOGMISSEDCALLS);
    std::set<std::string> inMemory;
    std::set<std::string> inDatabase;
    for (const auto& item : missed) {
        inMemory.insert(item.getUniqueId() + " " + item.getEntryId());
    }
    for (const auto& item : rows) {
        inDatabase.insert(item.getUniqueId() + " " + item.getEntryId());
    }
    EXPECT_EQ(inMemory, inDatabase);
}

// The whole service under load: calls are filed on the line's thread while clients subscribe, view, age, delete,
// refresh and change settings on theirs, and every observer reads every list inside each callback. The test is that it
// ends, that the thread sanitizer has nothing to say, and that everybody agrees afterwards.
TEST(Concurrency, ClientsAndCallsGoOnAtOnceAndAgreeAtTheEnd) {
    TestPhone phone;
    phone.starts();
    RecordingObserver watcher([&phone](const Callback&) { journaltest::readAllLists(*phone.service); });
    ASSERT_TRUE(phone.service->subscribeForJournalEvents(&watcher));

    std::thread first([&phone] { workAsClient(phone, 0); });
    std::thread second([&phone] { workAsClient(phone, 1); });
    for (int call = 0; call < 4 * kRounds; ++call) {
        const auto caller = party(std::to_string(4700 + call % 23), "Caller");
        const std::string callId = std::to_string(call + 1);
        phone.rings(callId, caller);
        if (call % 3 == 0) {
            phone.answers(callId, caller);
        }
        phone.clock.advance(1);
        phone.clears(callId);
        if (call % 50 == 0) {
            phone.management.change("server-based-features", call % 100 == 0 ? "true" : "false");
        }
    }
    first.join();
    second.join();

    const auto missed = phone.missed();
    int unviewed = 0;
    for (const MissedCallItem& item : missed) {
        unviewed += item.getViewed() ? 0 : 1;
    }
    EXPECT_EQ(watcher.callbacks(Callback::Kind::eMissedCallsCountUpdate).back().count, unviewed)
        << "the last count that an observer heard is the right one";

    expectTheDatabaseToHold(missed, phone);
    EXPECT_TRUE(phone.service->unsubscribeForJournalEvents(&watcher));
}

struct OwnSetting {
    const char* key;
    const char* first;
    const char* other;
    /// What the record in the database holds for `first`, and for `other`.
    const char* firstRecord;
    const char* otherRecord;
    std::atomic<int> changes{0};
};

// Each change that was accepted turns the value round. Were one lost, the value would not be the one that their number
// leads to.
TEST(Concurrency, SettingsFromEightThreadsWhileCallsArriveAreThoseThatWereWrittenLast) {
    journaltest::CapturedLog::switchOff();  // its lock would order the threads
    TestPhone phone;
    phone.starts();
    std::array<OwnSetting, 3> settings{{{"call-log-enabled", "true", "false", "true", "false"},
                                        {"missed-logging", "0", "1", "true", "false"},
                                        {"delete-missed-when-called", "0", "1", "false", "true"}}};
    std::vector<std::thread> writers;
    for (std::size_t writer = 0; writer < 8; ++writer) {
        writers.emplace_back([&phone, &settings, writer] {
            for (std::size_t round = 0; round < kRounds; ++round) {
                OwnSetting& setting = settings[(round + writer) % settings.size()];
                ManageableData data;
                data.populate(setting.key, setting.key,
                              (round / 3 + writer) % 2 == 0 ? setting.first : setting.other);
                setting.changes += phone.service->setData(data) ? 1 : 0;
            }
        });
    }
    for (int call = 0; call < kRounds; ++call) {
        phone.misses(std::to_string(call + 1), party(std::to_string(4700 + call % 23)));
        phone.clock.advance(1);
        if (call % 10 == 0) {
            phone.management.change("system-identifier", call % 20 == 0 ? "2" : "3");
        }
    }
    for (std::thread& writer : writers) {
        writer.join();
    }

    for (const OwnSetting& setting : settings) {
        const bool isFirst = setting.changes % 2 == 0;
        ManageableData data;
        data.setRootId(setting.key, nullptr);
        EXPECT_TRUE(phone.service->getData(data));
        EXPECT_EQ(data.interogate(setting.key)->getValue(), isFirst ? setting.first : setting.other);
        EXPECT_EQ(phone.database.settings()[setting.key],
                  isFirst ? setting.firstRecord : setting.otherRecord);
        EXPECT_GT(setting.changes, 0) << setting.key;
    }
    expectTheDatabaseToHold(phone.missed(), phone);
}

}  // namespace
