#include <gtest/gtest.h>

#include "host/services/Mobility.h"
#include "host/services/PallaxClient.h"
#include "host/services/Team.h"
#include "host/services/UnifiedCommunications.h"
#include "host/services/WebServices.h"
#include "tests/support/CapturedLog.h"

namespace {

using journaltest::CapturedLog;

// The journal finds a service by name and casts it to the interface that it needs.
template <typename Ifc>
Ifc& foundAs(Executable& service) {
    return dynamic_cast<Ifc&>(service);
}

TEST(PlainServices, LeaveTheCallsToTheJournalUntilTheyAreToldToRun) {
    host::UnifiedCommunications communications;
    host::PallaxClient pallax;
    host::WebServices web;
    EXPECT_FALSE(foundAs<UCServiceIfc>(communications).isRunning());
    EXPECT_FALSE(foundAs<PallaxServiceIfc>(pallax).isRunning());
    EXPECT_FALSE(foundAs<WSIServiceIfc>(web).isCurrentUserUC());

    communications.setRunning(true);
    pallax.setRunning(true);
    web.setCurrentUserUC(true);
    EXPECT_TRUE(foundAs<UCServiceIfc>(communications).isRunning());
    EXPECT_TRUE(foundAs<PallaxServiceIfc>(pallax).isRunning());
    EXPECT_TRUE(foundAs<WSIServiceIfc>(web).isCurrentUserUC());
}

TEST(PlainServices, ATeamLogsTheMissedCallsOfTheDevicesThatItWasGiven) {
    host::Team team({"2002"});
    auto& found = foundAs<TeamServiceIfc>(team);
    EXPECT_TRUE(found.isLoggingMissedCalls("2002"));
    EXPECT_FALSE(found.isLoggingMissedCalls("2003"));
    EXPECT_FALSE(found.isLoggingMissedCalls(""));

    team.setLoggingMissedCalls("2003", true);
    team.setLoggingMissedCalls("2002", false);
    EXPECT_TRUE(found.isLoggingMissedCalls("2003"));
    EXPECT_FALSE(found.isLoggingMissedCalls("2002"));
}

TEST(PlainServices, AVisitorsLogIsNotSavedAndNotTriedAgain) {
    host::Mobility mobility;
    EXPECT_TRUE(foundAs<MobilityServiceIfc>(mobility).saveVisitorCallLog());
    EXPECT_EQ(CapturedLog::count("There is no server for visitors"), 1);
}

}  // namespace
