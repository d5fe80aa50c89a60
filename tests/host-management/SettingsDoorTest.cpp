#include "host/management/SettingsDoor.h"

#include "host/management/LocalMgmtInvoker.h"
#include "tests/host-management/ManagementFixture.h"
#include "tests/support/FakeFramework.h"

namespace {

using journaltest::RecordingResponse;
using journalxml::Setting;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::SizeIs;

class SettingsDoor : public journaltest::ManagementFixture {
protected:
    void SetUp() override {
        start({{"tone", "7"}, {"missed-logging", "no effect"}});
        management().registerAgent("JournalMgmtId", m_agent, 1);
        management().observe("observed", m_agent);
    }
    std::string textOf(const std::string& key) {
        const auto setting = door().find(key);
        return !setting ? "unknown"
                        : (setting->ofJournal ? "journal " : "phone ") + setting->value.value_or("unset");
    }
    std::string ask(const std::string& request) {
        RecordingResponse response;
        host::LocalMgmtInvoker().handleMessage(&management(), request.data(),
                                               static_cast<int>(request.size()), &response);
        EXPECT_EQ(response.completions(), 1);
        return response.payload();
    }
    host::SettingsDoor door() { return host::SettingsDoor(management()); }

    journaltest::RecordingAgent m_agent;
};

TEST_F(SettingsDoor, KnowsWhatTheJournalServesWhatHasAValueAndWhatSomebodyReads) {
    EXPECT_EQ(textOf("missed-logging"), "journal served") << "the journal's answer, not the file's value";
    EXPECT_EQ(textOf("tone"), "phone 7");
    EXPECT_EQ(textOf("observed"), "phone unset");
    EXPECT_EQ(textOf("voice-mail-e164"), "phone unset");
    EXPECT_EQ(textOf("obsreved"), "unknown");
    EXPECT_THAT(door().all(), SizeIs(4 + 2 + 3));
    management().unregisterAgent(m_agent);
    EXPECT_EQ(textOf("observed"), "unknown");
    EXPECT_EQ(textOf("missed-logging"), "journal unset");
}

TEST_F(SettingsDoor, ChangesEachKeyWhereItIsKept) {
    EXPECT_TRUE(door().set("observed", "1").empty());
    EXPECT_TRUE(door().set("voice-mail-e164", "99").empty());
    EXPECT_TRUE(door().set("call-log-enabled", "false").empty());
    runStrand();
    EXPECT_THAT(m_agent.calls, ElementsAre("set call-log-enabled=false", "observed=1"));
    EXPECT_EQ(valueOf("voice-mail-e164"), "99");
    EXPECT_EQ(valueOf("call-log-enabled"), std::nullopt);

    EXPECT_THAT(door().set("obsreved", "1").text, HasSubstr("no setting obsreved"));
    EXPECT_EQ(valueOf("obsreved"), std::nullopt);
    EXPECT_THAT(door().set("tone", std::string(4097, 'x')).text, HasSubstr("too long"));
    m_agent.reason = {eRejectValueNotChanged, "missed-logging value is not changed"};
    EXPECT_EQ(door().set("missed-logging", "0").code, eRejectValueNotChanged);
    management().unregisterAgent(m_agent);
    EXPECT_THAT(door().set("missed-logging", "0").text, HasSubstr("JournalMgmtId"));
}

TEST_F(SettingsDoor, AnswersMessagesOfRemoteClients) {
    const auto answer = [this](const journalxml::ManagementRequest& request) {
        return journalxml::parseManagementAnswer(ask(journalxml::buildManagementRequest(request))).value();
    };
    EXPECT_THAT(answer({"", {}}).settings, SizeIs(9));
    EXPECT_THAT(answer({"tone", {}}).settings, ElementsAre(Setting{"tone", false, "7"}));
    EXPECT_THAT(answer({"tone", "8"}).settings, ElementsAre(Setting{"tone", false, "8"}));
    for (const auto& value : {std::optional<std::string>(), std::optional<std::string>("1")}) {
        const auto refused = answer({"nobody's", value}).refused.value();
        EXPECT_EQ(refused.key, "nobody's");
        EXPECT_EQ(refused.code, eRejectDataInvalid);
    }
    EXPECT_EQ(ask("<ManagementRequest/>"), "failure");
    EXPECT_EQ(ask(""), "failure");
    m_agent.during = [] { throw std::runtime_error("test"); };
    EXPECT_EQ(ask(journalxml::buildManagementRequest({"missed-logging", "1"})), "failure");
}

}  // namespace
