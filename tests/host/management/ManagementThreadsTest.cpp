#include <map>
#include <thread>

#include "host/framework/Strand.h"
#include "host/framework/WorkerPool.h"
#include "tests/host/management/ManagementFixture.h"

namespace {

using journaltest::dataOf;
using journaltest::RecordingAgent;

class ManagementThreads : public journaltest::ManagementFixture {
protected:
    void SetUp() override {
        m_post = [this](std::function<void()> work) { m_strand.post(std::move(work)); };
        start();
    }

    host::WorkerPool m_pool{2};
    host::Strand m_strand{m_pool};
};

// Eight writers: the last written value of each key is in memory, in the database and at the observer.
TEST_F(ManagementThreads, AgreeOnTheLastValueOfEachKey) {
    RecordingAgent agent;
    for (const char* const key : {"a", "b"}) {
        management().observe(key, agent);
    }
    std::atomic<int> failures{0};
    std::vector<std::thread> writers;
    for (int thread = 0; thread < 8; ++thread) {
        writers.emplace_back([this, thread, &failures] {
            for (int each = 0; each < 10; ++each) {
                failures += write(each % 2 == 0 ? "a" : "b", std::to_string(100 * thread + each)) ? 0 : 1;
                failures += valueOf("a").has_value() ? 0 : 1;
            }
        });
    }
    for (std::thread& each : writers) {
        each.join();
    }
    m_strand.drain();
    EXPECT_EQ(failures, 0);
    EXPECT_EQ(agent.calls.size(), 80U);
    std::map<std::string, std::string> last;
    for (const std::string& call : agent.calls) {
        last[call.substr(0, 1)] = call.substr(2);
    }
    for (const auto& [key, value] : last) {
        EXPECT_EQ(valueOf(key), value);
        EXPECT_EQ(m_database.text("SELECT value FROM management_value WHERE key = '" + key + "'"), value);
    }
}

// Each agent is destroyed after `unregisterAgent`, while another thread changes its keys and calls it.
TEST_F(ManagementThreads, CallNoUnregisteredAgent) {
    std::atomic<bool> done{false};
    std::thread other([this, &done] {
        for (int value = 0; !done; ++value) {
            ManageableData data = dataOf("k", std::to_string(value));
            management().publish(data);
            static_cast<void>(management().getAgentData("id", data));
            std::this_thread::yield();
        }
    });
    for (int each = 0; each < 100; ++each) {
        RecordingAgent agent;
        std::atomic<bool> notified{false};
        std::atomic<bool> inside{false};
        agent.during = [&notified, &inside] {
            inside = true;
            notified = true;
            std::this_thread::yield();
            inside = false;
        };
        management().observe("k", agent);
        EXPECT_TRUE(management().registerAgent("id", agent, 1));
        while (!notified) {
            std::this_thread::yield();
        }
        management().unregisterAgent(agent);
        EXPECT_FALSE(inside) << "it waits for the call of another thread";
    }
    done = true;
    other.join();
}

}  // namespace
