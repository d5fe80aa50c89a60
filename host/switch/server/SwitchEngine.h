#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

#include "host/switch/call-log/CallLogStore.h"
#include "host/switch/server/MessageTrace.h"
#include "host/switch/server/SwitchSimulator.h"

namespace host {

class SwitchCore;

/// The inside of the simulator: starts and ends the thread on which a `SwitchCore` lives, and hands work into it.
class SwitchSimulator::Engine {
public:
    explicit Engine(SwitchOptions options);
    ~Engine();

    void start();
    void stop();
    [[nodiscard]] std::uint16_t port() const noexcept { return m_port; }
    /// Runs `work` on the simulator's thread, later; nothing happens while the simulator is stopped.
    void post(std::function<void(SwitchCore&)> work);
    [[nodiscard]] MessageTrace& log() noexcept { return m_log; }
    [[nodiscard]] CallLog::Events callLog(const std::string& device) const {
        return m_callLogs.entries(device.empty() ? m_options.device : device);
    }

private:
    // The owner's thread.
    SwitchOptions m_options;
    std::thread m_thread;

    MessageTrace m_log;
    CallLogStore m_callLogs;
    std::atomic<std::uint16_t> m_port{0};

    // Guarded by m_coreLock: whether there is a room; what is in it belongs to the thread.
    std::mutex m_coreLock;
    std::unique_ptr<SwitchCore> m_core;
};

}  // namespace host
