#include <gtest/gtest.h>

#include "host/services/Mobility.h"
#include "host/services/PallaxClient.h"
#include "host/services/Team.h"
#include "host/services/UnifiedCommunications.h"
#include "host/services/WebServices.h"

namespace {

// The journal finds a service by name and casts it to the interface that it needs.
template <typename Ifc>
Ifc& foundAs(Executable& service) {
    return dynamic_cast<Ifc&>(service);
}

TEST(PlainServices, LeaveTheCallsToTheJournalUntilTheyAreToldOtherwise) {
    host::UnifiedCommunications communications;
    host::PallaxClient pallax;
    host::WebServices web;
    host::Team team({"2002"});
    host::Mobility mobility;
    EXPECT_TRUE(foundAs<MobilityServiceIfc>(mobility).saveVisitorCallLog()) << "is not tried again";
    for (const bool told : {false, true}) {
        EXPECT_EQ(foundAs<UCServiceIfc>(communications).isRunning(), told);
        EXPECT_EQ(foundAs<PallaxServiceIfc>(pallax).isRunning(), told);
        EXPECT_EQ(foundAs<WSIServiceIfc>(web).isCurrentUserUC(), told);
        EXPECT_EQ(foundAs<TeamServiceIfc>(team).isLoggingMissedCalls("2002"), !told);
        EXPECT_EQ(foundAs<TeamServiceIfc>(team).isLoggingMissedCalls("2003"), told);
        communications.setRunning(true);
        pallax.setRunning(true);
        web.setCurrentUserUC(true);
        team.setLoggingMissedCalls("2002", false);
        team.setLoggingMissedCalls("2003", true);
    }
}

}  // namespace
