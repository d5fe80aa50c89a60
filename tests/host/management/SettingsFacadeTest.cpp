#include "host/management/SettingsFacade.h"

#include "host/management/LocalMgmtInvoker.h"
#include "tests/host/management/ManagementFixture.h"
#include "tests/support/RecordingResponse.h"

namespace {

class SettingsFacade : public journaltest::ManagementFixture {
protected:
    void SetUp() override {
        start({{"tone", "7"}, {"missed-logging", "no effect"}});
        management().registerAgent("JournalMgmtId", m_agent, 1);
        management().observe("observed", m_agent);
    }
    host::SettingsFacade facade() { return host::SettingsFacade(management()); }
    std::string textOf(const std::string& key) {
        const auto setting = facade().find(key);
        const std::string value = setting ? setting->value.value_or("unset") : "";
        return !setting ? "unknown" : (setting->ofJournal ? "journal " : "phone ") + value;
    }

    journaltest::RecordingAgent m_agent;
};

TEST_F(SettingsFacade, HasTheKeysOfTheJournalThoseWithAValueAndThoseThatAreObserved) {
    EXPECT_EQ(textOf("missed-logging"), "journal served") << "the journal's value, not the file's";
    EXPECT_EQ(textOf("tone"), "phone 7");
    EXPECT_EQ(textOf("observed"), "phone unset");
    EXPECT_EQ(textOf("voice-mail-e164"), "phone unset");
    EXPECT_THAT(facade().all(), testing::SizeIs(4 + 2 + 3));
    for (const char* const key : {"observed", "voice-mail-e164", "call-log-enabled"}) {
        EXPECT_TRUE(facade().set(key, "1").empty());
    }
    runStrand();
    EXPECT_THAT(m_agent.calls, testing::ElementsAre("set call-log-enabled=1", "observed=1"));
    EXPECT_EQ(valueOf("voice-mail-e164"), "1");
    EXPECT_EQ(valueOf("call-log-enabled"), std::nullopt);

    management().unregisterAgent(m_agent);
    EXPECT_EQ(textOf("missed-logging"), "journal unset");
    EXPECT_THAT(facade().set("missed-logging", "0").text, testing::HasSubstr("JournalMgmtId"));
    start();
    EXPECT_EQ(textOf("tone"), "unknown");
}

TEST_F(SettingsFacade, RespondsToAMessageThatFailsWithFailure) {
    m_agent.during = [] { throw std::runtime_error("test"); };
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
