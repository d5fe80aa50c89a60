#include <ostream>
#include <string>

#include <gtest/gtest.h>

#include "tests/management/ManagementRig.h"
#include "tests/support/CapturedLog.h"

namespace journaltest {
namespace {

struct Row {
    const char* name;
    bool ucRuns, userIsUc, wsiAllowed, ringCentral, pallaxRuns;
    bool ours;
};

std::ostream& operator<<(std::ostream& out, const Row& row) {
    return out << row.name;
}

class JournallingGate : public testing::TestWithParam<Row> {
protected:
    void addServices() {
        rig.context.addService("UCServiceIfc", &rig.uc);
        rig.context.addService("PallaxServiceIfc", &rig.pallax);
        rig.context.addService("WSIServiceIfc", &rig.wsi);
    }

    ManagementRig rig;
};

TEST_P(JournallingGate, IsOpenWhileNoOtherJournalOwnsTheCallLog) {
    const Row& row = GetParam();
    addServices();
    rig.uc.setRunning(row.ucRuns);
    rig.wsi.setCurrentUserUC(row.userIsUc);
    rig.pallax.setRunning(row.pallaxRuns);
    rig.settings.change([&row](journal::SettingValues& values) {
        values.m_wsiAllowUcJournal = row.wsiAllowed;
        values.m_ringCentralSyncCallLog = row.ringCentral;
    });
    EXPECT_EQ(rig.gate.handleCSTAEvent(), row.ours);
    EXPECT_EQ(CapturedLog::lines().back().text,
              std::string("handleCSTAEvent() [") + (row.ours ? "true]" : "false]"));
    const std::string user = row.userIsUc ? "Yes" : "No";
    const std::string allowed = row.wsiAllowed ? "allowed" : "disabled";
    EXPECT_EQ(CapturedLog::contains("isWsiUcJournalAllowed(): current user UC '" + user +
                                    "' wsi-allow-uc-journal '" + allowed + "'"),
              !row.ucRuns);
}

const Row kRows[] = {
    {"NobodyElse", false, false, false, false, false, true},
    {"UcRuns", true, false, false, false, false, false},
    {"UcUserAllowed", false, true, true, false, false, false},
    {"UcUserNotAllowed", false, true, false, false, false, true},
    {"AllowedForAnotherUser", false, false, true, false, false, true},
    {"RingCentral", false, false, false, true, false, false},
    {"PallaxRuns", false, false, false, false, true, false},
    {"Everybody", true, true, true, true, true, false},
};
INSTANTIATE_TEST_SUITE_P(Table, JournallingGate, testing::ValuesIn(kRows), kRowName);

TEST_F(JournallingGate, IsOpenWithoutAnyOfTheServices) {
    EXPECT_TRUE(rig.gate.handleCSTAEvent());
}

TEST_F(JournallingGate, LooksForAServiceUntilItIsFoundAndNotAgain) {
    static_cast<void>(rig.gate.handleCSTAEvent());
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
