#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

#include "host/switch/call-log/SwitchCallLogs.h"
#include "host/switch/server/SwitchLog.h"
#include "host/switch/server/SwitchSimulator.h"

namespace host {

class SwitchRoom;

/// The inside of the simulator: starts and ends the thread on which a `SwitchRoom` lives, and hands work into it.
class SwitchSimulator::Engine {
public:
    explicit Engine(SwitchOptions options);
    ~Engine();

    void start();
    void stop();
    [[nodiscard]] std::uint16_t port() const noexcept { return m_port; }
    /// Runs `work` on the simulator's thread, later; nothing happens while the simulator is stopped.
    void post(std::function<void(SwitchRoom&)> work);
    [[nodiscard]] SwitchLog& log() noexcept { return m_log; }
    [[nodiscard]] SwitchCallLog::Events callLog(const std::string& device) const {
        return m_callLogs.entries(device.empty() ? m_options.device : device);
    }

private:
    // The owner's thread.
    SwitchOptions m_options;
    std::thread m_thread;

    SwitchLog m_log;
    SwitchCallLogs m_callLogs;
    std::atomic<std::uint16_t> m_port{0};

    // Guarded by m_roomLock: whether there is a room; what is in it belongs to the thread.
    std::mutex m_roomLock;
    std::unique_ptr<SwitchRoom> m_room;
};

}  // namespace host
