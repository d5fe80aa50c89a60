#include <map>

#include "tests/host/management/ManagementFixture.h"
#include "tests/support/Table.h"

namespace {

using journaltest::dataOf;
using journaltest::RecordingAgent;
using journaltest::split;
using testing::ElementsAre;
using testing::HasSubstr;

class Agents : public journaltest::ManagementFixture {
protected:
    void SetUp() override { start(); }

    /// Runs the steps and returns the notifications of the remaining agents, A and B. Keys "a" and "b" start
    /// with "0". The steps: "A observes KEY", "A leaves" (and is destroyed), "KEY=VALUE" (a write), "publish
    /// KEY=VALUE", "announces" (the values), "runs" (the strand), "ends" (the management).
    std::string notifications(const std::string& steps) {
        start({}, {{"a", "0"}, {"b", "0"}});
        std::map<std::string, std::unique_ptr<RecordingAgent>> agents;
        for (const std::string& step : split(steps, ',')) {
            const std::vector<std::string> words = split(step, ' ');
            const std::vector<std::string> change = split(words.back(), '=');
            if (words.back() == "runs") {
                runStrand();
            } else if (words.back() == "announces") {
                management().announceValues();
            } else if (words.back() == "ends") {
                m_management.reset();
            } else if (words.back() == "leaves") {
                management().unregisterAgent(*agents.at(words[0]));
                agents.erase(words[0]);
            } else if (words.size() == 3) {
                auto& agent = agents.try_emplace(words[0], std::make_unique<RecordingAgent>()).first->second;
                EXPECT_TRUE(management().observe(words[2], *agent));
            } else if (words[0] == "publish") {
                publish(change.at(0), change.at(1));
            } else {
                EXPECT_TRUE(write(change.at(0), change.at(1)));
            }
        }
        std::string text;
        for (const auto& [name, agent] : agents) {
            text += (text.empty() ? "" : "; ") + name + ":";
            for (const std::string& call : agent->calls) {
                text += " " + call;
            }
        }
        m_management.reset();
        m_posted.clear();
        return text;
    }

    RecordingAgent m_agent;
};

TEST_F(Agents, AreNotifiedOfEachWriteOnceOnTheStrandInOrder) {
    for (const auto& row : journaltest::table(2, R"(
        A observes a, A observes b, a=1, b=2, c=3, a=4             | A:
        A observes a, A observes b, a=1, b=2, c=3, a=4, runs       | A: a=1 b=2 a=4
        A observes a, A observes a, a=1, a=1, runs                 | A: a=1 a=1
        A observes b, A observes a, A observes d, announces, runs  | A: a=0 b=0
        A observes a, announces, a=0, publish a=0, runs            | A: a=0 a=0
        A observes new, B observes new, new=1, runs                | A: new=1; B: new=1
        A observes c, publish c=2, publish c=2, runs               | A: c=2
        A observes a, B observes a, a=1, A leaves, a=2, runs       | B: a=1 a=2
        A observes a, a=1, A leaves, A observes a, a=2, runs       | A: a=2
        A observes a, a=1, ends, runs                              | A:
    )")) {
        EXPECT_EQ(notifications(row[0]), row[1]) << row[0];
    }
    start();
    for (const char* const text : {"", "a key", "a\nkey"}) {
        EXPECT_FALSE(management().observe(text, m_agent)) << text;
    }
}

TEST_F(Agents, KeepTheirIdentifierUntilTheyAreUnregistered) {
    RecordingAgent other;
    ManageableData data = dataOf("k", "1");
    EXPECT_TRUE(management().registerAgent("id", m_agent, 1) && management().registerAgent("id", m_agent, 1));
    EXPECT_FALSE(management().registerAgent("id", other, 1));
    management().unregisterAgent(m_agent);
    EXPECT_FALSE(management().setAgentData("id", data));
    EXPECT_TRUE(management().registerAgent("id", other, 1) && management().setAgentData("id", data));
    EXPECT_THAT(other.calls, ElementsAre("set k=1"));
    management().unregisterAgent(other);
}

// The journal publishes its settings from inside `setData`, and resets a key from inside the notification.
TEST_F(Agents, MayUseTheManagementFromInsideTheirOperations) {
    management().registerAgent("JournalMgmtId", m_agent, 1);
    management().observe("a", m_agent);
    m_agent.during = [this] {
        m_agent.during = [this] {
            EXPECT_EQ(valueOf("a"), "1");
            m_agent.during = [this] { management().unregisterAgent(m_agent); };
            write("a", "0");
            write("a", "2");
        };
        publish("call-log-enabled", "false");
        EXPECT_TRUE(write("a", "1"));
    };
    ManageableData data = dataOf("call-log-enabled", "false");
    EXPECT_TRUE(management().setAgentData("JournalMgmtId", data));
    EXPECT_EQ(valueOf("call-log-enabled"), "false");
    runStrand();
    EXPECT_THAT(m_agent.calls, ElementsAre("set call-log-enabled=false", "a=1", "a=0"));
}

TEST_F(Agents, OwnTheKeysThatTheyPublish) {
    publish("call-log-enabled", "true");
    ManageableData data = dataOf("call-log-enabled", "false");
    EXPECT_FALSE(management().write(data));
    EXPECT_THAT(data.getRejectReasons().at("call-log-enabled").text, HasSubstr("belongs to a service"));
    EXPECT_EQ(valueOf("call-log-enabled"), "true");
}

}  // namespace
