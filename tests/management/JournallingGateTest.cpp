#include <string>

#include <gtest/gtest.h>

#include "tests/management/ManagementRig.h"
#include "tests/support/Table.h"

namespace journaltest {
namespace {

class JournallingGate : public testing::Test {
protected:
    void addServices() {
        rig.context.addService("UCServiceIfc", &rig.uc);
        rig.context.addService("PallaxServiceIfc", &rig.pallax);
        rig.context.addService("WSIServiceIfc", &rig.wsi);
    }

    ManagementRig rig;
};

TEST_F(JournallingGate, IsOpenWhileNoOtherJournalOwnsTheCallLog) {
    addServices();
    for (const auto& row : table(2, R"(
                                         | open
ucRuns                                   | shut
userIsUc allowed                         | shut
userIsUc                                 | open
allowed                                  | open
ringCentral                              | shut
pallaxRuns                               | shut
ucRuns userIsUc allowed ringCentral pallaxRuns | shut
)")) {
        const auto is = [&row](const char* word) { return row[0].find(word) != std::string::npos; };
        rig.uc.setRunning(is("ucRuns"));
        rig.wsi.setCurrentUserUC(is("userIsUc"));
        rig.pallax.setRunning(is("pallaxRuns"));
        rig.settings.change([&is](journal::SettingValues& values) {
            values.m_wsiAllowUcJournal = is("allowed");
            values.m_ringCentralSyncCallLog = is("ringCentral");
        });
        EXPECT_EQ(rig.gate.handleCSTAEvent(), row[1] == "open") << row[0];
    }
}

TEST_F(JournallingGate, IsOpenWithoutTheServicesAndLooksForEachUntilItIsFound) {
    EXPECT_TRUE(rig.gate.handleCSTAEvent());
    addServices();
    rig.pallax.setRunning(true);
    EXPECT_FALSE(rig.gate.handleCSTAEvent());
    const std::size_t lookUps = rig.context.lookUps().size();
    rig.context.addService("PallaxServiceIfc", nullptr);
    EXPECT_FALSE(rig.gate.handleCSTAEvent());
    EXPECT_EQ(rig.context.lookUps().size(), lookUps);
}

}  // namespace
}  // namespace journaltest
