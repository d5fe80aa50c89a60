// When a visitor's call log is saved: the first delay by the MAC address, then hourly on a Qorvex phone, whenever
// something new was written.

#include <chrono>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "platform/texts/SoftwareTypes.h"
#include "src/JournalServiceEvents/VisitorCallLog.h"
#include "tests/management/ManagementRig.h"
#include "tests/support/CapturedLog.h"
#include "tests/support/FakeMobility.h"

namespace journaltest {
namespace {

using std::chrono::hours;
using std::chrono::milliseconds;

class VisitorCallLog : public testing::Test, public Executable {
protected:
    VisitorCallLog() {
        rig.collaborators.m_mobilityService = &mobility;
        rig.phoneIs(softwareTypes::qorvex);
    }
    void startsWithMac(const std::string& address) {
        rig.management.set("mac-addr", address);
        log.createFirstTimer();
    }
    /// The platform arms the first timer when it is made.
    void firstTimerRuns() { rig.context.startTimer(log.getAutoSaveVisitorCallLogToVantorTimerId()); }
    void somethingIsWritten() { rig.mirror.m_visitorCallLogSavePending = true; }
    void timerEvent(int id) override { log.onTimer(id); }

    ManagementRig rig;
    FakeMobility mobility;
    journal::VisitorCallLog log{rig.collaborators, rig.settings, rig.managementValues,
                                rig.mirror.m_visitorCallLogSavePending, *this};
};

TEST_F(VisitorCallLog, IsFirstSavedAfterAnHourAndMoreByTheMacAddress) {
    const struct {
        const char* address;
        int spreadMs;
    } addresses[] = {{"00:1a:e8:00:00:00", 0},
                     {"00:1a:e8:00:00:ff", 3570000},
                     {"001AE80000FF", 3570000},
                     {"00:1a:e8:00:00:10", 224000},
                     {"00:1a:e8:00:00:0F", 210000},
                     {"zz", 0},
                     {"f", 0},
                     {"", 0},
                     {"0-1-2-3-4-f", 0}};
    for (const auto& address : addresses) {
        startsWithMac(address.address);
        EXPECT_EQ(rig.context.lengthOf(log.getAutoSaveVisitorCallLogToVantorTimerId()),
                  milliseconds(3600000 + address.spreadMs))
            << address.address;
    }
    EXPECT_TRUE(rig.context.runningTimers().empty()) << "arming it is the platform's business";
}

TEST_F(VisitorCallLog, HasNoTimerWithoutAMacAddressOrWhereNoneCanBeMade) {
    log.createFirstTimer();
    EXPECT_EQ(log.getAutoSaveVisitorCallLogToVantorTimerId(), -1);
    rig.context.refuseTimers();
    startsWithMac("00");
    EXPECT_EQ(log.getAutoSaveVisitorCallLogToVantorTimerId(), -1);
    EXPECT_TRUE(CapturedLog::contains("could not start autoSaveVisitorCallLogToVantor timer"));
}

TEST_F(VisitorCallLog, IsSavedEveryHourThatSomethingWasWritten) {
    startsWithMac("00");
    firstTimerRuns();
    somethingIsWritten();
    rig.context.advance(hours(1));
    EXPECT_EQ(mobility.saves(), 1);
    EXPECT_EQ(rig.context.timers().size(), 1U) << "the first timer is gone, the hourly one has come";
    EXPECT_EQ(rig.context.runningTimers().size(), 1U);
    rig.context.advance(hours(3));
    EXPECT_EQ(mobility.saves(), 1) << "nothing new";
    somethingIsWritten();
    rig.context.advance(hours(1));
    EXPECT_EQ(mobility.saves(), 2);
}

TEST_F(VisitorCallLog, IsTriedAgainAnHourAfterAFailure) {
    startsWithMac("00");
    firstTimerRuns();
    somethingIsWritten();
    mobility.succeed(false);
    rig.context.advance(hours(2));
    EXPECT_EQ(mobility.saves(), 2);
    EXPECT_TRUE(rig.mirror.m_visitorCallLogSavePending);
    mobility.succeed(true);
    rig.context.advance(hours(2));
    EXPECT_EQ(mobility.saves(), 3);
}

TEST_F(VisitorCallLog, IsNeverSavedOnOtherPhones) {
    for (const char* type : {softwareTypes::sip, "", "Norlith Qorvex 2"}) {
        rig.phoneIs(type);
        startsWithMac("00");
        firstTimerRuns();
        somethingIsWritten();
        rig.context.advance(hours(3));
        EXPECT_TRUE(rig.context.timers().empty()) << type;
    }
    EXPECT_EQ(mobility.saves(), 0);
}

TEST_F(VisitorCallLog, IsNotSavedWhenTheHourlyTimerCannotBeMade) {
    startsWithMac("00");
    firstTimerRuns();
    somethingIsWritten();
    rig.context.refuseTimers();
    rig.context.advance(hours(3));
    EXPECT_EQ(mobility.saves(), 0);
    EXPECT_TRUE(CapturedLog::contains("could not create timer"));
}

TEST_F(VisitorCallLog, WaitsForAMobilityService) {
    rig.collaborators.m_mobilityService = nullptr;
    startsWithMac("00");
    firstTimerRuns();
    somethingIsWritten();
    rig.context.advance(hours(2));
    EXPECT_TRUE(rig.mirror.m_visitorCallLogSavePending);
}

TEST_F(VisitorCallLog, IgnoresTimersOfOthersAndThoseThatWereNeverMade) {
    somethingIsWritten();
    log.onTimer(-1);
    log.onTimer(17);
    EXPECT_EQ(mobility.saves(), 0);
}

TEST_F(VisitorCallLog, TakesItsTimersAwayWhenItGoes) {
    {
        journal::VisitorCallLog passing(rig.collaborators, rig.settings, rig.managementValues,
                                        rig.mirror.m_visitorCallLogSavePending, *this);
        rig.management.set("mac-addr", "00");
        passing.createFirstTimer();
        EXPECT_EQ(rig.context.timers().size(), 1U);
    }
    EXPECT_TRUE(rig.context.timers().empty());
}

}  // namespace
}  // namespace journaltest
