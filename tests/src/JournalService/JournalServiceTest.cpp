#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <deque>
#include <regex>
#include <set>
#include <stdexcept>
#include <string>
#include <thread>
#include <type_traits>
#include <vector>

#include "journal-items/ListTraits.h"
#include "tests/support/CapturedLog.h"
#include "tests/support/ItemBuilders.h"
#include "tests/support/ListOperations.h"
#include "tests/support/RecordingObserver.h"
#include "tests/support/SimulatedPhone.h"
#include "tests/support/Table.h"

namespace journaltest {
namespace {

using namespace std::chrono_literals;

class JournalServiceFrame : public testing::Test {
protected:
    SimulatedPhone phone;
};

TEST_F(JournalServiceFrame, LooksItsServicesUpInTheirOrderAndServesItsClientsWithoutThem) {
    FakeContext bare;
    JournalServiceQorvexTel journal(nullptr);
    journal.init(bare);
    const std::vector<std::string> expected = {
        "CSTAServiceIfc",  "DataAccessServiceIfc",    "DirectoryServiceIfc", "LocalMgmtIfc",
        "ClockServiceIfc", "DigitAnalysisServiceIfc", "MobilityServiceIfc",  "TeamServiceIfc"};
    EXPECT_EQ(bare.lookUps(), expected);
    EXPECT_EQ(CapturedLog::count("Cannot find "), 8);
    RecordingObserver observer;
    EXPECT_TRUE(journal.subscribeForJournalEvents(&observer));
    EXPECT_EQ(observer.heard(), "missedCount(0); dialled(-, -, 3)");
    EXPECT_TRUE(journal.deleteAllCalls() && journal.resetUserData());
    EXPECT_FALSE(journal.resetUserCalls() || journal.resetUserContacts()) << "these two are not there";
    EXPECT_FALSE(journal.isUCServiceRunning() || journal.isPallaxServiceRunning());
    EXPECT_FALSE(journal.isWsiUcJournalAllowed());
    EXPECT_TRUE(journal.unsubscribeForJournalEvents(&observer));
}

TEST_F(JournalServiceFrame, StartsByMonitoringItsLineReadingItsSettingsAndRegistering) {
    for (const std::string type : {softwaretypes::qorvex, softwaretypes::sip}) {
        SimulatedPhone started(type);
        started.database.settings["missed-logging"] = "false";
        started.starts();
        // Another service monitors a SIP phone.
        EXPECT_EQ(started.csta.asked(), type == softwaretypes::sip
                                            ? "status"
                                            : "change localDeviceID; start localDeviceID; status");
        EXPECT_EQ(started.management.registrations(), "JournalMgmtId 1");
        EXPECT_EQ(started.setting("missed-logging"), "1");
        EXPECT_EQ(started.service().getDigitAnalysisService(), &started.digits);
        EXPECT_TRUE(started.service().handleCSTAEvent());
        started.uc.running = true;
        EXPECT_FALSE(started.service().handleCSTAEvent()) << "another journal keeps the call log";

        const int timer = started.service().getAutoSaveVisitorCallLogToVantorTimerId();
        EXPECT_EQ(started.context.lengthOf(timer), 3600000ms + 16 * 14000ms);
        EXPECT_TRUE(started.context.runningTimers().empty()) << "the platform arms the timers";
    }
}

/// A SIP phone with two entries in each list, the newer one of 4712, the other of 4711: m2 (in the row u-m2)
/// and m1, d2 and d1, r2, f2, c2.
struct PhoneWithEntries : SimulatedPhone {
    PhoneWithEntries() : SimulatedPhone(softwaretypes::sip) {
        forEachList([this]<typename Item>() {
            for (const std::string& index : {std::string("2"), std::string("1")}) {
                const std::string id = *ListTraits<Item>::kWord + index;
                if constexpr (std::is_same_v<Item, CallBackItem>) {
                    database.addRow(ListTraits<Item>::kTable,
                                    callBackOf(id, "471" + index, "2026-11-2" + index));
                } else {
                    database.addRow(ListTraits<Item>::kTable,
                                    itemOf<Item>(id, "u-" + id, {{"471" + index, "2026-11-2" + index}}));
                }
            }
        });
        service().subscribeForJournalEvents(&observer);
        observer.clear();
    }
    /// The entry ids of the lists, which the database holds as well.
    std::string entryIds() {
        Texts ids;
        forEachList([this, &ids]<typename Item>() {
            ids.push_back(joined(entryIdsOf(list<Item>()), " "));
            EXPECT_EQ(ids.back(), joined(entryIdsOf(database.rows<Item>(ListTraits<Item>::kTable)), " "));
        });
        return joined(ids, " ");
    }

    RecordingObserver observer;
};

// Operation | callbacks | the entries that are left. One that deletes no entry returns false here.
TEST(JournalServiceOperations, DeleteFromTheListThatTheyName) {
    for (const auto& row : table(3, R"(
one missed m2        | missedCount(1); missed(-, u-m2, 2) | m1 d2 d1 r2 r1 f2 f1 c2 c1
one missed m2 switch | | m2 m1 d2 d1 r2 r1 f2 f1 c2 c1
one dialled d2       | dialled(d1, u-d2, 2) | m2 m1 d1 r2 r1 f2 f1 c2 c1
one received r1      | received(-, u-r1, 2) | m2 m1 d2 d1 r2 f2 f1 c2 c1
one forwarded f1     | forwarded(-, u-f1, 2) | m2 m1 d2 d1 r2 r1 f2 c2 c1
one callback c2      | callBacks(-, c2, 2); callBacksCount(1) | m2 m1 d2 d1 r2 r1 f2 f1 c1
set missed m1 d2     | missedCount(1); missed(-, -, 3) | m2 d2 d1 r2 r1 f2 f1 c2 c1
set dialled d2 m2    | dialled(d1, -, 3) | m2 m1 d1 r2 r1 f2 f1 c2 c1
set received r2 r1   | received(-, -, 3) | m2 m1 d2 d1 f2 f1 c2 c1
set forwarded f2 c2  | forwarded(-, -, 3) | m2 m1 d2 d1 r2 r1 f1 c2 c1
set callback c2 f2   | callBacks(-, -, 3); callBacksCount(1) | m2 m1 d2 d1 r2 r1 f2 f1 c1
all missed           | | d2 d1 r2 r1 f2 f1 c2 c1
all dialled          | dialled(-, -, 4) | m2 m1 r2 r1 f2 f1 c2 c1
all received         | | m2 m1 d2 d1 f2 f1 c2 c1
all forwarded        | forwarded(-, -, 3) | m2 m1 d2 d1 r2 r1 c2 c1
all callback         | callBacks(-, -, 3); callBacksCount(0) | m2 m1 d2 d1 r2 r1 f2 f1
any m2 c1            | missedCount(1); missed(-, -, 3); callBacks(-, -, 3); callBacksCount(1) | m1 d2 d1 r2 r1 f2 f1 c2
any-switch m2 c1     | callBacks(-, -, 3); callBacksCount(1) | m2 m1 d2 d1 r2 r1 f2 f1 c2
)")) {
        SCOPED_TRACE(row[0]);
        PhoneWithEntries phone;
        const std::string before = phone.entryIds();
        EXPECT_EQ(perform(phone.service(), phone.service(), row[0]), row[2] != before);
        EXPECT_EQ(phone.observer.heard(), row[1]);
        EXPECT_EQ(phone.entryIds(), row[2]);
    }
}

TEST(JournalServiceOperations, ReadOverAllLists) {
    PhoneWithEntries phone;
    DialledCallItem last;
    EXPECT_TRUE(phone.service().getLastDialledNumber(last));
    EXPECT_EQ(last.getEntryId(), "d2");
    Contact contact;
    contact.setMobile("4711");
    std::vector<Contact::CallRecord> records;
    EXPECT_TRUE(phone.service().getCallRecordsAssociatedWith(contact, records));
    ASSERT_EQ(records.size(), 5U);
    EXPECT_EQ(records.back(), (Contact::CallRecord{"c1", "callback"}));
}

// A phonebook with an unexpected failure.
class ThrowingDirectory final : public Executable, public DirectoryServiceIfc {
public:
    bool lookUpContact(Contact& /*contact*/) override { throw std::runtime_error("the phonebook is gone"); }
};

TEST_F(JournalServiceFrame, APlatformServiceThatThrowsCostsOneEventOnly) {
    ThrowingDirectory broken;
    phone.context.addService("DirectoryServiceIfc", &broken);
    phone.starts();
    phone.plays("misses 17 4711");
    EXPECT_TRUE(CapturedLog::contains("deliverEvent failed: the phonebook is gone"));
    phone.plays("rings 18 4712");
    RecordingObserver observer;
    EXPECT_TRUE(phone.service().subscribeForJournalEvents(&observer)) << "no lock was left behind";
}

TEST_F(JournalServiceFrame, ADestroyedServiceLeavesNoTimerAndNoAgentBehind) {
    phone.starts();
    phone.service().deliverEvent(nullptr);
    phone.service().timerEvent(12345);
    phone.plays("rings 7 4711; holds 7 for-transfer; clears 7");
    ASSERT_EQ(phone.context.runningTimers().size(), 1U);

    phone.stops();
    EXPECT_TRUE(phone.context.timers().empty());
    phone.context.advance(2h);
    phone.management.change("server-based-features", "true");
}

constexpr int kRounds = 150;
constexpr int kClients = 4;

/// Reads all lists inside each callback, and compares each count with the missed calls: the lists do not
/// change between a change and the end of its announcement.
class CountingObserver {
public:
    explicit CountingObserver(JournalServiceIfc& journal) : m_journal(journal) {}

    std::atomic<int> wrongCounts{0};
    RecordingObserver observer{[this](const Callback& callback) {
        readAllLists(m_journal);
        if (callback.event == Callback::Event::eMissedCallsCountUpdate) {
            std::deque<MissedCallItem> missed;
            m_journal.getMissedCallList(missed);
            const auto unviewed = std::count_if(missed.begin(), missed.end(),
                                                [](const auto& item) { return !item.getViewed(); });
            wrongCounts += unviewed != static_cast<long>(callback.count) ? 1 : 0;
        }
    }};

private:
    JournalServiceIfc& m_journal;
};

class Concurrency : public JournalServiceFrame {
protected:
    /// Plays a client on a thread of its own.
    void workAsClient(int seed) {
        JournalServiceIfc& journal = phone.service();
        CountingObserver counting(journal);
        for (int round = seed; round < kRounds + seed; ++round) {
            ASSERT_TRUE(journal.subscribeForJournalEvents(&counting.observer));
            const auto missed = phone.missed();
            if (!missed.empty()) {
                journal.setMissedCallListAsViewed({missed.front().getEntryId()});
                journal.ageMissedCall(missed.back().getEntryId());
                if (round % 5 == 0) {
                    journal.deleteMissedCall(missed.back().getEntryId(), false);
                    journal.deleteReceivedCallList();
                }
            }
            if (round % 31 == 0) {
                journal.deleteAllCalls();
                journal.refreshCallLog();
            }
            if (phone.takes("call-log-enabled", (round / 2 + seed) % 2 == 0 ? "false" : "true")) {
                ++settingChanges;
            }
            ASSERT_TRUE(journal.unsubscribeForJournalEvents(&counting.observer));
        }
        EXPECT_EQ(counting.wrongCounts, 0);
    }

    template <typename Item>
    void expectTheDatabaseHoldsTheList() {
        const auto idsOf = [](const auto& items) {
            std::set<std::string> ids;
            for (const Item& item : items) {
                ids.insert(item.getUniqueId() + " " + item.getEntryId());
            }
            return ids;
        };
        EXPECT_EQ(idsOf(phone.list<Item>()), idsOf(phone.database.rows<Item>(ListTraits<Item>::kTable)));
    }

    std::atomic<int> settingChanges{0};
};

// The whole service under load: calls of every list are filed on the line's thread while clients subscribe,
// view, age, delete, refresh and change settings on theirs, and every observer reads every list inside each
// callback. The test ends without a report of the thread sanitizer, and lists, database and settings agree
// afterwards.
TEST_F(Concurrency, OfClientsAndCallsEndsAndAllAgree) {
    CapturedLog::switchOff();  // its lock would order the threads
    phone.starts();
    CountingObserver watcher(phone.service());
    ASSERT_TRUE(phone.service().subscribeForJournalEvents(&watcher.observer));

    std::vector<std::thread> clients;
    for (int client = 0; client < kClients; ++client) {
        clients.emplace_back([this, client] { workAsClient(client); });
    }
    const char* const courses[] = {"misses # @:Caller", "answers # @; clears #",
                                   "misses # @; dials #d @; clears #d", "rings # @; diverts # @ here 4799"};
    for (int call = 0; call < 4 * kRounds; ++call) {
        std::string course = std::regex_replace(courses[call % 4], std::regex("#"), std::to_string(call + 1));
        phone.plays(std::regex_replace(course, std::regex("@"), "47" + std::to_string(call % 23)) +
                    "; passes 1");
        if (call % 50 == 0) {
            phone.management.change("system-identifier", call % 100 == 0 ? "2" : "3");
            phone.management.change("server-based-features", call % 100 == 0 ? "true" : "false");
        }
    }
    for (std::thread& client : clients) {
        client.join();
    }

    // Each accepted change turned the setting round: after a lost one, their number and the value differ.
    EXPECT_GT(settingChanges, 0);
    EXPECT_EQ(phone.setting("call-log-enabled"), settingChanges % 2 == 0 ? "true" : "false");
    EXPECT_EQ(phone.database.settings["call-log-enabled"], phone.setting("call-log-enabled"));
    EXPECT_EQ(watcher.wrongCounts, 0);
    expectTheDatabaseHoldsTheList<MissedCallItem>();
    expectTheDatabaseHoldsTheList<DialledCallItem>();
    expectTheDatabaseHoldsTheList<ReceivedCallItem>();
    expectTheDatabaseHoldsTheList<ForwardedCallItem>();
    EXPECT_TRUE(phone.service().unsubscribeForJournalEvents(&watcher.observer));
}

}  // namespace
}  // namespace journaltest
