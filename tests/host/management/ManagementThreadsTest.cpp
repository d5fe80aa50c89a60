#include <atomic>
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

// Eight writers: the last written value is in memory, in the database and at the observer.
TEST_F(ManagementThreads, AgreeOnTheLastValueOfAKey) {
    RecordingAgent agent;
    management().observe("a", agent);
    std::atomic<int> failures{0};
    std::vector<std::jthread> writers;
    for (int thread = 0; thread < 8; ++thread) {
        writers.emplace_back([this, thread, &failures] {
            for (int each = 0; each < 10; ++each) {
                failures += write("a", std::to_string(100 * thread + each)) && valueOf("a") ? 0 : 1;
            }
        });
    }
    writers.clear();  // waits for them
    m_strand.drain();
    EXPECT_EQ(failures, 0);
    ASSERT_EQ(agent.calls.size(), 80U);
    EXPECT_EQ("a=" + valueOf("a").value_or(""), agent.calls.back());
    EXPECT_EQ(m_database.text("SELECT 'a=' || value FROM management_value"), agent.calls.back());
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
        std::atomic<int> begun{0};
        std::atomic<int> ended{0};
        agent.during = [&begun, &ended] {
            ++begun;
            std::this_thread::yield();
            ++ended;
        };
        management().observe("k", agent);
        EXPECT_TRUE(management().registerAgent("id", agent, 1));
        while (begun == 0) {
            std::this_thread::yield();
        }
        management().unregisterAgent(agent);
        EXPECT_EQ(begun, ended) << "it waits for the call of another thread";
    }
    done = true;
    other.join();
}

}  // namespace
