#include "tests/host-management/ManagementFixture.h"

namespace {

using journaltest::RecordingAgent;
using testing::ElementsAre;
using testing::IsEmpty;

class Notifications : public journaltest::ManagementFixture {
protected:
    void SetUp() override { start({{"a", "0"}, {"b", "0"}}); }

    RecordingAgent m_agent;
};

TEST_F(Notifications, ComeOnTheStrandInTheOrderOfTheChanges) {
    EXPECT_TRUE(management().observe("a", m_agent));
    EXPECT_TRUE(management().observe("b", m_agent));
    write("a", "1");
    write("b", "2");
    write("c", "3");
    write("a", "4");
    EXPECT_THAT(m_agent.calls, IsEmpty());
    runStrand();
    EXPECT_THAT(m_agent.calls, ElementsAre("a=1", "b=2", "a=4"));
}

TEST_F(Notifications, ComeOncePerChangeHoweverOftenTheAgentAsked) {
    management().observe("a", m_agent);
    management().observe("a", m_agent);
    write("a", "1");
    write("a", "1");
    runStrand();
    EXPECT_THAT(m_agent.calls, ElementsAre("a=1"));
}

TEST_F(Notifications, ComeForAKeyThatHadNoValueAndForOneThatIsPublished) {
    RecordingAgent other;
    management().observe("new", m_agent);
    management().observe("served", m_agent);
    management().observe("served", other);
    write("new", "1");
    publish("served", "2");
    publish("served", "2");
    runStrand();
    EXPECT_THAT(m_agent.calls, ElementsAre("new=1", "served=2"));
    EXPECT_THAT(other.calls, ElementsAre("served=2"));
    management().unregisterAgent(other);
}

TEST_F(Notifications, AreRefusedForWhatIsNoKey) {
    for (const char* const text : {"", "a key", "a\nkey"}) {
        EXPECT_FALSE(management().observe(text, m_agent)) << text;
    }
}

TEST_F(Notifications, ThatWerePostedBeforeTheAgentLeftDoNotReachIt) {
    auto agent = std::make_unique<RecordingAgent>();
    management().observe("a", *agent);
    management().observe("a", m_agent);
    write("a", "1");
    management().unregisterAgent(*agent);
    agent.reset();
    write("a", "2");
    runStrand();
    EXPECT_THAT(m_agent.calls, ElementsAre("a=1", "a=2"));
}

TEST_F(Notifications, ThatAreLeftWhenTheManagementGoesVanish) {
    management().observe("a", m_agent);
    write("a", "1");
    m_management.reset();
    runStrand();
    EXPECT_THAT(m_agent.calls, IsEmpty());
}

TEST_F(Notifications, LetTheAgentUseTheManagementFromInside) {
    management().observe("a", m_agent);
    management().observe("b", m_agent);
    m_agent.during = [this] {
        m_agent.during = [] {};
        // As a reload does: the key goes back to "0".
        EXPECT_EQ(valueOf("a"), "1");
        write("a", "0");
        publish("b", "9");
    };
    write("a", "1");
    runStrand();
    EXPECT_THAT(m_agent.calls, ElementsAre("a=1", "a=0", "b=9"));
}

TEST_F(Notifications, LetTheAgentLeaveFromInside) {
    management().observe("a", m_agent);
    m_agent.during = [this] { management().unregisterAgent(m_agent); };
    write("a", "1");
    write("a", "2");
    runStrand();
    EXPECT_THAT(m_agent.calls, ElementsAre("a=1"));
}

TEST_F(Notifications, ComeAgainToAnAgentThatCameBack) {
    management().observe("a", m_agent);
    management().unregisterAgent(m_agent);
    management().observe("a", m_agent);
    write("a", "1");
    runStrand();
    EXPECT_THAT(m_agent.calls, ElementsAre("a=1"));
}

}  // namespace
