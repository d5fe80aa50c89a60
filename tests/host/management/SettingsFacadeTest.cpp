#include "host/management/SettingsFacade.h"

#include "tests/host/management/ManagementFixture.h"

namespace {

using SettingsFacade = journaltest::ManagementFixture;

TEST_F(SettingsFacade, HasTheSettingsOfTheJournalWithoutAValueBeforeItIsThere) {
    start({{"missed-logging", "no effect"}});
    const auto setting = host::SettingsFacade(management()).find("missed-logging");
    ASSERT_TRUE(setting && setting->ofJournal);
    EXPECT_EQ(setting->value, std::nullopt);
    EXPECT_THAT(host::SettingsFacade(management()).set("missed-logging", "0").text,
                testing::HasSubstr("JournalMgmtId"));
}

}  // namespace
