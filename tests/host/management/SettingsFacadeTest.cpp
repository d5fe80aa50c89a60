#include "host/management/SettingsFacade.h"

#include "host/management/LocalMgmtInvoker.h"
#include "tests/host/management/ManagementFixture.h"
#include "tests/support/RecordingResponse.h"

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

TEST_F(SettingsFacade, RespondsToAMessageThatFailsWithFailure) {
    start();
    journaltest::RecordingAgent agent;
    agent.during = [] { throw std::runtime_error("test"); };
    management().registerAgent("JournalMgmtId", agent, 1);
    for (const std::string& request : {std::string("<ManagementRequest/>"), std::string(),
                                       journalxml::buildManagementRequest({"missed-logging", "1"})}) {
        journaltest::RecordingResponse response;
        host::LocalMgmtInvoker().handleMessage(&management(), request.data(),
                                               static_cast<int>(request.size()), &response);
        EXPECT_EQ(response.completions(), 1);
        EXPECT_EQ(response.payload(), "failure") << request;
    }
}

}  // namespace
