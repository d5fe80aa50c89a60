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
        if (!beginCall()) {
            return false;
        }
        const CallGuard guard{*this};
        work(m_agent);
        return true;
    }

    /// Refuses further calls and waits for those that other threads are making. Does not wait for a call of
    /// the calling thread, so an agent may call it from inside its own operation.
    void close();

private:
    struct CallGuard {
        AgentHandle& handle;
        explicit CallGuard(AgentHandle& owner) : handle(owner) {}
        ~CallGuard() { handle.endCall(); }
        CallGuard(const CallGuard&) = delete;
        CallGuard& operator=(const CallGuard&) = delete;
    };

    [[nodiscard]] bool beginCall();
    void endCall();

    MgmtAgentIfc& m_agent;

    std::mutex m_mutex;
    std::condition_variable m_callEnded;
    // Guarded by m_mutex. m_activeCalls contains the thread id once for each active call.
    std::vector<std::thread::id> m_activeCalls;
    bool m_closed = false;
};

}  // namespace host
