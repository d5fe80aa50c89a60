#include <chrono>

#include "tests/frame/TestPhone.h"
#include "tests/support/RecordingObserver.h"

namespace {

using namespace std::chrono_literals;
using journaltest::CapturedLog;
using journaltest::party;
using journaltest::RecordingObserver;
using journaltest::TestPhone;

class JournalServiceFrame : public testing::Test {
protected:
    void SetUp() override { CapturedLog::reset(); }

    TestPhone phone;
};

TEST_F(JournalServiceFrame, LooksItsServicesUpInTheirOrderAndGoesOnWithoutThem) {
    journaltest::FakeContext bare;
    JournalServiceQorvexTel journal(nullptr);
    journal.init(bare);

    const std::vector<std::string> expected = {
        "CSTAServiceIfc",  "DataAccessServiceIfc",    "DirectoryServiceIfc", "LocalMgmtIfc",
        "ClockServiceIfc", "DigitAnalysisServiceIfc", "MobilityServiceIfc",  "TeamServiceIfc"};
    EXPECT_EQ(bare.lookUps(), expected);
    for (const char* name : {"CSTAServiceIfc", "DataAccessServiceIfc", "DirectoryServiceIfc", "LocalMgmtIfc",
                             "ClockServiceIfc", "DigitAnalysisServiceIfc", "TeamServiceIfc"}) {
        EXPECT_TRUE(CapturedLog::contains(std::string("Cannot find ") + name)) << name;
    }
    EXPECT_TRUE(CapturedLog::contains("Cannot find mobility service"));

    // Alone it still serves its clients.
    RecordingObserver observer;
    EXPECT_TRUE(journal.subscribeForJournalEvents(&observer));
    EXPECT_EQ(observer.count(), 2u);
    EXPECT_TRUE(journal.deleteAllCalls());
    EXPECT_TRUE(journal.unsubscribeForJournalEvents(&observer));
}

TEST_F(JournalServiceFrame, StartsByRegisteringMonitoringAndReadingItsSettings) {
    phone.database.setSetting("missed-logging", "false");
    phone.starts();

    using Kind = journaltest::FakeCstaService::Kind;
    const auto requests = phone.csta.requests();
    ASSERT_EQ(requests.size(), 3u);
    EXPECT_EQ(requests[0].kind, Kind::eChangeMonitorFilter);
    EXPECT_EQ(requests[1].kind, Kind::eMonitorStart);
    EXPECT_EQ(requests[1].device, CSTADevice::kLocalDevice);
    EXPECT_EQ(requests[2].kind, Kind::eSystemStatus);

    ASSERT_EQ(phone.management.registrations().size(), 1u);
    EXPECT_EQ(phone.management.registrations().front().identifier, "JournalMgmtId");
    EXPECT_EQ(phone.management.registrations().front().version, 1);

    ManageableData data;
    data.setRootId("missed-logging", nullptr);
    EXPECT_TRUE(phone.service->getData(data));
    EXPECT_EQ(data.interogate("missed-logging")->getValue(), "1");
}

TEST_F(JournalServiceFrame, ASipPhoneDoesNotMonitorItsLineByItself) {
    TestPhone sip{softwareTypes::sip};
    sip.starts();
    EXPECT_TRUE(sip.csta.requests(journaltest::FakeCstaService::Kind::eMonitorStart).empty());
    EXPECT_EQ(sip.csta.requests(journaltest::FakeCstaService::Kind::eSystemStatus).size(), 1u);
}

TEST_F(JournalServiceFrame, CreatesItsTimersWithoutArmingThem) {
    phone.starts();
    const auto timers = phone.context.timers();
    ASSERT_EQ(timers.size(), 2u);
    EXPECT_EQ(phone.context.lengthOf(timers[0]), 3600000ms + 16 * 14000ms);
    EXPECT_EQ(phone.context.lengthOf(timers[1]), 1000ms);
    EXPECT_TRUE(phone.context.runningTimers().empty());
    EXPECT_EQ(phone.service->getAutoSaveVisitorCallLogToVantorTimerId(), timers[0]);
}

TEST_F(JournalServiceFrame, WithoutTimersItSaysSoAndHandlesEveryClearAtOnce) {
    phone.context.refuseTimers();
    phone.starts();
    EXPECT_TRUE(CapturedLog::contains("could not start autoSaveVisitorCallLogToVantor timer"));
    phone.rings("7", party("4711"));
    phone.holds("7", CSTA_EC_HeldForTransfer);
    phone.clears("7");
    EXPECT_EQ(phone.missed().size(), 1u);
}

TEST_F(JournalServiceFrame, AMissedCallTravelsTheWholeRoad) {
    phone.starts();
    RecordingObserver observer;
    phone.service->subscribeForJournalEvents(&observer);
    observer.clear();

    phone.misses("17", party("4711", "Ann Example"));

    ASSERT_EQ(phone.missed().size(), 1u);
    const MissedCallItem item = phone.missed().front();
    EXPECT_EQ(item.getSurname(), "Ann Example");
    EXPECT_EQ(item.getMissedCallInfoList().front().getNumber(), "4711");
    EXPECT_EQ(item.getEntryId(), "2026-11-21T05:22:05Z00000011");
    EXPECT_FALSE(item.getViewed());

    const auto told = observer.callbacks();
    ASSERT_EQ(told.size(), 2u);
    EXPECT_EQ(told[0].count, 1);
    EXPECT_EQ(told[1].as<MissedCallItem>().getUniqueId(), item.getUniqueId());
    EXPECT_EQ(told[1].action, JournalServiceObserverIfc::eItemAdded);
    EXPECT_TRUE(told[1].entryId.empty());

    const auto rows =
        phone.database.rows<MissedCallItem>(CallListDatabaseAdapterHelper::DAS_CALLLOGMISSEDCALLS);
    ASSERT_EQ(rows.size(), 1u);
    EXPECT_EQ(rows.front().getUniqueId(), item.getUniqueId());
}

TEST_F(JournalServiceFrame, TheSameCallerAgainChangesTheEntryAndItsRowAndNamesTheOldUniqueId) {
    phone.starts();
    RecordingObserver observer;
    phone.service->subscribeForJournalEvents(&observer);
    phone.misses("17", party("4711", "Ann Example"));
    const MissedCallItem first = phone.missed().front();
    observer.clear();
    phone.clock.advance(60);

    phone.misses("18", party("4711", "Ann Example"));

    ASSERT_EQ(phone.missed().size(), 1u);
    const MissedCallItem merged = phone.missed().front();
    EXPECT_NE(merged.getEntryId(), first.getEntryId());
    EXPECT_EQ(merged.getUniqueId(), first.getUniqueId());
    ASSERT_EQ(merged.getMissedCallInfoList().size(), 2u);
    EXPECT_GT(merged.getMissedCallInfoList().front().getTimeAndDate(),
              merged.getMissedCallInfoList().back().getTimeAndDate());
    EXPECT_EQ(observer.callbacks().back().entryId, first.getUniqueId());
    EXPECT_EQ(observer.callbacks().back().action, JournalServiceObserverIfc::eItemUpdated);
    EXPECT_EQ(
        phone.database.rows<MissedCallItem>(CallListDatabaseAdapterHelper::DAS_CALLLOGMISSEDCALLS).size(),
        1u);
}

TEST_F(JournalServiceFrame, ACallBeforeTheFirstSubscriptionFindsTheEntryThatItsPartyHasInTheDatabase) {
    {
        TestPhone before;
        before.starts();
        before.misses("17", party("4711", "Ann Example"));
        phone.database.addRow(CallListDatabaseAdapterHelper::DAS_CALLLOGMISSEDCALLS, before.missed().front());
    }
    phone.starts();
    phone.clock.advance(60);
    phone.misses("18", party("4711"));

    ASSERT_EQ(phone.missed().size(), 1u);
    EXPECT_EQ(phone.missed().front().getMissedCallInfoList().size(), 2u);
    EXPECT_EQ(phone.missed().front().getSurname(), "Ann Example") << "a call without a name takes none away";
    EXPECT_EQ(
        phone.database.rows<MissedCallItem>(CallListDatabaseAdapterHelper::DAS_CALLLOGMISSEDCALLS).size(),
        1u);
}

TEST_F(JournalServiceFrame, TwoCallsOfOneSecondWithIdsThatAreNoNumbersHaveTwoEntryIds) {
    phone.starts();
    phone.misses("FF0001", party("4711"));
    const std::string first = phone.missed().front().getEntryId();
    phone.misses("FF0002", party("4712"));
    const std::string second = phone.missed().front().getEntryId();
    EXPECT_NE(first, second);
    EXPECT_EQ(first.size(), 28u);
    EXPECT_EQ(second.size(), 28u);
    EXPECT_TRUE(phone.service->deleteMissedCall(second, false));
    EXPECT_EQ(phone.missed().front().getEntryId(), first);
}

TEST_F(JournalServiceFrame, AnOldCopyOfAnItemCannotTakeTheRowOfTheLivingOne) {
    phone.starts();
    phone.misses("17", party("4711"));
    const MissedCallItem old = phone.missed().front();
    phone.clock.advance(60);
    phone.misses("18", party("4711"));

    phone.service->updateMissedCall(old);
    phone.service->setMissedCallListAsViewed({old.getEntryId()});

    const auto rows =
        phone.database.rows<MissedCallItem>(CallListDatabaseAdapterHelper::DAS_CALLLOGMISSEDCALLS);
    ASSERT_EQ(rows.size(), 2u) << "what a client adds has a row of its own";
    for (const MissedCallItem& row : rows) {
        EXPECT_EQ(row.getMissedCallInfoList().size(), row.getUniqueId() == old.getUniqueId() ? 2u : 1u);
    }
}

// A phonebook that fails as nobody expects it to.
class ThrowingDirectory final : public Executable, public DirectoryServiceIfc {
public:
    bool lookUpContact(Contact& /*contact*/) override { throw std::runtime_error("the phonebook is gone"); }
};

TEST_F(JournalServiceFrame, APlatformServiceThatThrowsCostsOneEventOnly) {
    ThrowingDirectory broken;
    phone.context.addService("DirectoryServiceIfc", &broken);
    phone.starts();
    phone.misses("17", party("4711"));
    EXPECT_TRUE(CapturedLog::contains("deliverEvent failed: the phonebook is gone"));
    phone.rings("18", party("4712"));
    RecordingObserver observer;
    EXPECT_TRUE(phone.service->subscribeForJournalEvents(&observer)) << "no lock was left behind";
}

TEST_F(JournalServiceFrame, AnAnsweredCallIsReceivedWithItsDuration) {
    phone.phonebook.add("4711", "Ann", "Example");
    phone.starts();
    phone.rings("17", party("4711", "switch name"));
    phone.clock.advance(7);
    phone.answers("17", party("4711", "switch name"));
    phone.clock.advance(65);
    phone.clears("17");

    EXPECT_TRUE(phone.missed().empty());
    ASSERT_EQ(phone.received().size(), 1u);
    const ReceivedCallItem item = phone.received().front();
    EXPECT_EQ(item.getFirstname(), "Ann");
    EXPECT_EQ(item.getSurname(), "Example");
    EXPECT_EQ(item.getReceivedCallInfoList().front().getDuration(), "01:05");
}

TEST_F(JournalServiceFrame, NothingIsJournalledWhileAnotherJournalOwnsTheCallLog) {
    phone.starts();
    const auto isIgnored = [this] {
        phone.misses("1", party("4711"));
        return phone.missed().empty();
    };
    phone.uc.setRunning(true);
    EXPECT_TRUE(isIgnored());
    phone.uc.setRunning(false);
    phone.pallax.setRunning(true);
    EXPECT_TRUE(isIgnored());
    phone.pallax.setRunning(false);
    phone.wsi.setCurrentUserUC(true);
    phone.management.change("wsi-allow-uc-journal", "true");
    EXPECT_TRUE(isIgnored());
    phone.management.change("wsi-allow-uc-journal", "false");
    EXPECT_FALSE(isIgnored());
    EXPECT_TRUE(CapturedLog::contains(
        "isWsiUcJournalAllowed(): current user UC 'Yes' wsi-allow-uc-journal 'allowed'"));
}

TEST_F(JournalServiceFrame, AServiceThatAppearsLaterIsFoundAtTheNextCall) {
    phone.context.addService("UCServiceIfc", nullptr);
    phone.starts();
    EXPECT_FALSE(phone.service->isUCServiceRunning());
    phone.uc.setRunning(true);
    phone.context.addService("UCServiceIfc", &phone.uc);
    EXPECT_TRUE(phone.service->isUCServiceRunning());
}

TEST_F(JournalServiceFrame, ANullEventAndUnknownTimersDoNothing) {
    phone.starts();
    phone.service->deliverEvent(nullptr);
    phone.service->timerEvent(-1);
    phone.service->timerEvent(12345);
    EXPECT_EQ(CapturedLog::count("timer expired"), 2);
    EXPECT_TRUE(phone.missed().empty());
}

TEST_F(JournalServiceFrame, ADestroyedServiceLeavesNoTimerAndNoAgentBehind) {
    phone.starts();
    phone.rings("7", party("4711"));
    phone.holds("7", CSTA_EC_HeldForTransfer);
    phone.clears("7");
    ASSERT_EQ(phone.context.runningTimers().size(), 1u);

    phone.stops();
    EXPECT_TRUE(phone.context.timers().empty());
    phone.context.advance(2h);
    phone.management.change("server-based-features", "true");
}

TEST_F(JournalServiceFrame, TwoServicesInOneProcessOutliveEachOther) {
    TestPhone other;
    other.clock.advance(3600);
    phone.starts();
    other.starts();
    phone.misses("1", party("4711"));
    other.misses("1", party("4711"));
    EXPECT_EQ(phone.missed().front().getEntryId(), "2026-11-21T05:22:05Z00000001");
    EXPECT_EQ(other.missed().front().getEntryId(), "2026-11-21T06:22:05Z00000001");

    other.stops();
    phone.clock.advance(1);
    phone.misses("2", party("4712"));
    EXPECT_EQ(phone.missed().front().getEntryId(), "2026-11-21T05:22:06Z00000002");
}

TEST_F(JournalServiceFrame, ResettingTheUsersDataOfASipPhoneBringsTheDefaultsBack) {
    TestPhone sip{softwareTypes::sip};
    sip.database.setSetting("call-log-enabled", "false");
    sip.database.setSetting("missed-logging", "false");
    sip.database.setSetting("delete-missed-when-called", "true");
    sip.starts();

    EXPECT_TRUE(sip.service->resetUserData());

    std::vector<std::string> published;
    for (const ManageableData& data : sip.management.published()) {
        published.push_back(data.getRootId() + "=" + data.interogate(data.getRootId())->getValue());
    }
    EXPECT_EQ(published, (std::vector<std::string>{"call-log-enabled=true", "missed-logging=0",
                                                   "delete-missed-when-called=0"}));
    EXPECT_EQ(sip.database.settings().at("call-log-enabled"), "true");
    EXPECT_TRUE(sip.service->resetUserData());
    EXPECT_EQ(sip.management.published().size(), 3u)
        << "what is at its default already is not published again";
}

TEST_F(JournalServiceFrame, ResettingCallsAndContactsSaysThatItIsNotThere) {
    phone.starts();
    EXPECT_FALSE(phone.service->resetUserCalls());
    EXPECT_FALSE(phone.service->resetUserContacts());
    EXPECT_EQ(CapturedLog::count("resetUserCalls is NOT implemented"), 2);
}

}  // namespace
