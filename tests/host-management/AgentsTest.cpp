#include "tests/host-management/ManagementFixture.h"

namespace {

using journaltest::RecordingAgent;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class Agents : public journaltest::ManagementFixture {
protected:
    void SetUp() override { start(); }

    RecordingAgent m_agent;
};

TEST_F(Agents, AreReachedByTheirIdentifier) {
    EXPECT_TRUE(management().registerAgent("JournalMgmtId", m_agent, 1));
    ManageableData data;
    data.populate("call-log-enabled", "call-log-enabled", "false");
    EXPECT_TRUE(management().setAgentData("JournalMgmtId", data));

    ManageableData question;
    question.setRootId("missed-logging", nullptr);
    EXPECT_TRUE(management().getAgentData("JournalMgmtId", question));
    EXPECT_EQ(question.interogate("missed-logging")->getValue(), "served");

    EXPECT_TRUE(management().resetAgentUserData("JournalMgmtId"));
    EXPECT_THAT(m_agent.calls, ElementsAre("set call-log-enabled=false", "get missed-logging", "reset"));
}

TEST_F(Agents, TellTheCallerWhyTheyRefuse) {
    management().registerAgent("JournalMgmtId", m_agent, 1);
    m_agent.reason = {eRejectValueNotChanged, "missed-logging value is not changed"};
    ManageableData data;
    data.populate("missed-logging", "missed-logging", "0");
    EXPECT_FALSE(management().setAgentData("JournalMgmtId", data));
    EXPECT_EQ(data.getRejectReasons().at("missed-logging").code, eRejectValueNotChanged);
    EXPECT_EQ(data.getRejectReasons().at("missed-logging").text, "missed-logging value is not changed");
}

TEST_F(Agents, ThatAreNotThereAreSaidToBeMissing) {
    ManageableData data;
    data.populate("k", "k", "1");
    EXPECT_FALSE(management().setAgentData("Nobody", data));
    EXPECT_THAT(data.getRejectReasons().at("k").text, HasSubstr("Nobody"));
    EXPECT_FALSE(management().getAgentData("Nobody", data));
    EXPECT_FALSE(management().resetAgentUserData("Nobody"));
}

TEST_F(Agents, KeepAnIdentifierThatTheyHaveUntilTheyLeave) {
    RecordingAgent other;
    EXPECT_TRUE(management().registerAgent("id", m_agent, 1));
    EXPECT_TRUE(management().registerAgent("id", m_agent, 1));
    EXPECT_FALSE(management().registerAgent("id", other, 1));
    EXPECT_TRUE(management().resetAgentUserData("id"));
    EXPECT_THAT(other.calls, IsEmpty());

    management().unregisterAgent(m_agent);
    EXPECT_FALSE(management().resetAgentUserData("id"));
    EXPECT_TRUE(management().registerAgent("id", other, 1));
    EXPECT_TRUE(management().resetAgentUserData("id"));
    EXPECT_THAT(other.calls, ElementsAre("reset"));
    management().unregisterAgent(other);
}

// The journal publishes its settings from inside `setData`.
TEST_F(Agents, MayUseTheManagementFromInsideTheirOperations) {
    management().registerAgent("JournalMgmtId", m_agent, 1);
    m_agent.during = [this] {
        publish("call-log-enabled", "false");
        EXPECT_TRUE(write("reload-conversations", "false"));
    };
    ManageableData data;
    data.populate("call-log-enabled", "call-log-enabled", "false");
    EXPECT_TRUE(management().setAgentData("JournalMgmtId", data));
    EXPECT_EQ(valueOf("call-log-enabled"), "false");
}

TEST_F(Agents, KeepTheKeysThatTheyPublishToThemselves) {
    publish("call-log-enabled", "true");
    EXPECT_EQ(valueOf("call-log-enabled"), "true");
    ManageableData data;
    data.populate("call-log-enabled", "call-log-enabled", "false");
    EXPECT_FALSE(management().write(data));
    EXPECT_THAT(data.getRejectReasons().at("call-log-enabled").text, HasSubstr("belongs to a service"));
    EXPECT_EQ(valueOf("call-log-enabled"), "true");
    start();
    EXPECT_EQ(valueOf("call-log-enabled"), std::nullopt) << "the agent keeps it, not the management";
}

}  // namespace
