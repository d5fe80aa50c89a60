#pragma once

#include <algorithm>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

class MgmtAgentIfc;

namespace host {

/// The way to one agent, which can be closed for good: afterwards no call reaches the agent, however late it comes.
///
/// Any thread may call. No lock is held while the agent runs.
class AgentHandle {
public:
    /// The agent is borrowed until `close` has returned.
    explicit AgentHandle(MgmtAgentIfc& agent) : m_agent(agent) {}
    AgentHandle(const AgentHandle&) = delete;
    AgentHandle& operator=(const AgentHandle&) = delete;
    ~AgentHandle() = default;

    /// Runs `work` with the agent; false when the gate is closed.
    template <typename Work>
    bool call(Work&& work) {
        if (!enter()) {
            return false;
        }
        const Leaving leaving{*this};
        work(m_agent);
        return true;
    }

    /// Lets nothing in any more and waits for the calls of other threads that are inside. From inside a call of the agent
    /// it does not wait for that one.
    void close();

private:
    struct Leaving {
        AgentHandle& handle;
        explicit Leaving(AgentHandle& entered) : handle(entered) {}
        ~Leaving() { handle.leave(); }
        Leaving(const Leaving&) = delete;
        Leaving& operator=(const Leaving&) = delete;
    };

    [[nodiscard]] bool enter();
    void leave();

    MgmtAgentIfc& m_agent;

    std::mutex m_mutex;
    std::condition_variable m_left;
    // Guarded by m_mutex: a thread stands in it once for each call that it is inside.
    std::vector<std::thread::id> m_inside;
    bool m_closed = false;
};

}  // namespace host
