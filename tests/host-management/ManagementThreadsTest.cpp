#include <condition_variable>
#include <map>
#include <thread>

#include "tests/host-management/ManagementFixture.h"

namespace {

using journaltest::RecordingAgent;

/// A strand with a thread of its own.
class Strand {
public:
    ~Strand() { end(); }
    void post(std::function<void()> work) {
        const std::lock_guard lock(m_mutex);
        m_posted.push_back(std::move(work));
        m_changed.notify_one();
    }
    /// Returns when everything that was posted has run.
    void end() {
        if (m_thread.joinable()) {
            post({});
            m_thread.join();
        }
    }

private:
    void run() {
        for (;;) {
            std::function<void()> work;
            {
                std::unique_lock lock(m_mutex);
                m_changed.wait(lock, [this] { return !m_posted.empty(); });
                work = std::move(m_posted.front());
                m_posted.pop_front();
            }
            if (!work) {
                return;
            }
            work();
        }
    }

    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<std::function<void()>> m_posted;
    std::thread m_thread{[this] { run(); }};
};

class ManagementThreads : public testing::Test {
protected:
    bool write(const std::string& key, const std::string& value) {
        ManageableData data;
        data.populate(key, key, value);
        return m_management.write(data);
    }
    std::string valueOf(const std::string& key) {
        ManageableData data;
        data.setRootId(key, nullptr);
        return m_management.read(data) ? data.interogate(key)->getValue() : std::string();
    }

    journaltest::TemporaryDatabase m_database;
    Strand m_strand;
    host::LocalManagement m_management{
        *m_database, "2001", {}, {}, [this](std::function<void()> work) { m_strand.post(std::move(work)); }};
};

// Eight writers: of each key the last value that was written holds, in memory, in the database and at the observer.
TEST_F(ManagementThreads, AgreeOnTheLastValueOfEachKey) {
    RecordingAgent agent;
    for (const char* const key : {"a", "b"}) {
        m_management.observe(key, agent);
    }
    std::atomic<int> failures{0};
    std::vector<std::thread> writers;
    for (int thread = 0; thread < 8; ++thread) {
        writers.emplace_back([this, thread, &failures] {
            for (int each = 0; each < 10; ++each) {
                failures += write(each % 2 == 0 ? "a" : "b", std::to_string(100 * thread + each)) ? 0 : 1;
                failures += valueOf("a").empty() ? 1 : 0;
            }
        });
    }
    for (std::thread& each : writers) {
        each.join();
    }
    m_strand.end();
    EXPECT_EQ(failures, 0);
    EXPECT_EQ(agent.calls.size(), 80U);
    std::map<std::string, std::string> last;
    for (const std::string& call : agent.calls) {
        last[call.substr(0, 1)] = call.substr(2);
    }
    for (const char* const key : {"a", "b"}) {
        EXPECT_EQ(valueOf(key), last[key]);
        EXPECT_EQ(
            m_database.text(std::string("SELECT value FROM management_value WHERE key = '") + key + "'"),
            last[key]);
    }
}

/// An agent for many threads at a time.
class SharedAgent final : public MgmtAgentIfc {
public:
    bool setData(ManageableData& /*data*/) override { return true; }
    bool getData(ManageableData& /*data*/) override {
        asked = true;
        return true;
    }
    void manageableDataChanged(ManageableData& /*data*/) override { told = true; }
    bool resetUserData() override { return true; }

    std::atomic<bool> asked{false};
    std::atomic<bool> told{false};
};

// Each agent is destroyed as soon as it has left, while others change its keys and ask it: nobody may reach it any more.
TEST_F(ManagementThreads, ReachNoAgentThatHasLeft) {
    std::atomic<bool> done{false};
    std::thread other([this, &done] {
        for (int value = 0; !done; ++value) {
            ManageableData data;
            data.populate("k", "k", std::to_string(value));
            m_management.publish(data);
            static_cast<void>(m_management.getAgentData("id", data));
            std::this_thread::yield();
        }
    });
    for (int each = 0; each < 100; ++each) {
        SharedAgent agent;
        m_management.observe("k", agent);
        EXPECT_TRUE(m_management.registerAgent("id", agent, 1));
        while (!agent.told || !agent.asked) {
            std::this_thread::yield();
        }
        m_management.unregisterAgent(agent);
    }
    done = true;
    other.join();
}

}  // namespace
