#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "src/JournalService/Collaborators.h"
#include "tests/support/CapturedLog.h"
#include "tests/support/FakeClock.h"
#include "tests/support/FakeContext.h"
#include "tests/support/FakeCstaService.h"
#include "tests/support/FakeMobility.h"

namespace journaltest {
namespace {

using Texts = std::vector<std::string>;

TEST(Collaborators, AreLookedUpInOrderAndTheMissingOnesAreLogged) {
    FakeContext context;
    FakeCstaService csta;
    FakeMobility mobility;
    context.addService("CSTAServiceIfc", &csta);
    context.addService("MobilityServiceIfc", &mobility);
    journal::Collaborators collaborators;
    collaborators.findAll(context);

    EXPECT_EQ(context.lookUps(),
              (Texts{"CSTAServiceIfc", "DataAccessServiceIfc", "DirectoryServiceIfc", "LocalMgmtIfc",
                     "ClockServiceIfc", "DigitAnalysisServiceIfc", "MobilityServiceIfc", "TeamServiceIfc"}));
    EXPECT_EQ(collaborators.m_cstaService, &csta);
    EXPECT_EQ(collaborators.m_mobilityService, &mobility);
    EXPECT_EQ(collaborators.m_teamService, nullptr);
    EXPECT_EQ(CapturedLog::count("Cannot find "), 6);
    for (const CapturedLog::Line& line : CapturedLog::lines()) {
        EXPECT_EQ(line.level, 2) << line.text;
    }
}

TEST(Collaborators, OfAnotherInterfaceCountAsMissing) {
    FakeContext context;
    FakeClock clock;
    context.addService("CSTAServiceIfc", &clock);
    context.addService("MobilityServiceIfc", &clock);
    context.addService("UCServiceIfc", &clock);
    journal::Collaborators collaborators;
    EXPECT_EQ(collaborators.ucService(), nullptr) << "there is no context yet";
    collaborators.findAll(context);
    EXPECT_EQ(collaborators.m_cstaService, nullptr);
    EXPECT_EQ(collaborators.ucService(), nullptr);
}

}  // namespace
}  // namespace journaltest
