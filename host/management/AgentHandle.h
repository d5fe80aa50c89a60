#pragma once

#include <algorithm>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

class MgmtAgentIfc;

namespace host {

/// A handle of one agent. Once it is closed, no call reaches the agent any more.
///
/// Thread-safe. No lock is held while the agent runs.
class AgentHandle {
public:
    /// Requires: `agent` lives until `close` has returned.
    explicit AgentHandle(MgmtAgentIfc& agent) : m_agent(agent) {}
    AgentHandle(const AgentHandle&) = delete;
    AgentHandle& operator=(const AgentHandle&) = delete;
    ~AgentHandle() = default;

    /// Runs `work` with the agent. Returns false if the handle is closed.
    template <typename Work>
    bool call(Work&& work) {
        if (!enter()) {
            return false;
        }
        const Leaving leaving{*this};
        work(m_agent);
        return true;
    }

    /// Refuses further calls and waits for those that other threads are making. Does not wait for a call of
    /// the calling thread, so an agent may call it from inside its own operation.
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
    // Guarded by m_mutex. m_inside has each thread once for each call that it is making.
    std::vector<std::thread::id> m_inside;
    bool m_closed = false;
};

}  // namespace host
