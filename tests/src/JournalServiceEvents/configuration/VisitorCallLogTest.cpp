#include <chrono>
#include <string>

#include <gtest/gtest.h>

#include "tests/src/JournalServiceEvents/configuration/ConfigurationFixture.h"
#include "tests/support/Table.h"

namespace journaltest {
namespace {

// Phone | steps; a number advances the clock by hours | attempted saves | a save is pending at the end
TEST(VisitorCallLog, IsSavedEveryHourThatSomethingWasWrittenOnAQorvexPhone) {
    for (const auto& row : table(4, R"(
Norlith Qorvex   | written 1 written 1     | 2 | no
Norlith Qorvex   | fails written 2 works 2 | 3 | no
Norlith Qorvex   | missing written 2       | 0 | yes
Norlith Qorvex   | written others          | 0 | yes
Norlith Qorvex   | written refuse 3        | 0 | yes
Norlith Qorvex 2 | written 3               | 0 | yes
Norlith SIP      | written 3               | 0 | yes
)")) {
        SCOPED_TRACE(row[0] + ": " + row[1]);
        FakeMobility mobility;
        ConfigurationFixture phone;
        phone.platform.m_mobilityService = &mobility;
        phone.phoneIs(row[0]);
        phone.visitorCallLog.createFirstTimer(phone.phoneValues);
        EXPECT_TRUE(phone.context.timers().empty()) << "no address";
        phone.management.set("mac-addr", "0-1-2-3-4-f");  // damaged: no time is added to the hour
        phone.visitorCallLog.createFirstTimer(phone.phoneValues);
        phone.context.startTimer(phone.context.timers().front());
        for (const std::string& step : split(row[1], ' ')) {
            if (step == "written") {
                phone.visitorCallLog.setSavePending();
            } else if (step == "fails" || step == "works") {
                mobility.grants = step == "works";
            } else if (step == "missing") {
                phone.platform.m_mobilityService = nullptr;
            } else if (step == "refuse") {
                phone.context.refuseTimers();
            } else if (step == "others") {
                phone.timerEvent(-1);
                phone.timerEvent(17);
            } else {
                phone.context.advance(std::chrono::hours(std::stoi(step)));
            }
        }
        EXPECT_EQ(mobility.saves, std::stoi(row[2]));
        EXPECT_EQ(phone.visitorCallLog.isSavePending(), row[3] == "yes");
        EXPECT_LE(phone.context.timers().size(), 1U) << "the hourly timer takes the place of the first";
    }
}

}  // namespace
}  // namespace journaltest
