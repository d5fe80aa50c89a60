#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

#include "host/switch/call-log/CallLogStore.h"
#include "host/switch/server/SwitchOptions.h"

namespace host {

class SwitchCore;

/// Implementation of `SwitchSimulator`: the simulator's thread, and the `SwitchCore` that runs on it.
class SwitchSimulatorImpl {
public:
    explicit SwitchSimulatorImpl(SwitchOptions options);
    ~SwitchSimulatorImpl();

    void start();
    void stop();
    [[nodiscard]] std::uint16_t port() const noexcept { return m_port; }
    /// Posts `work` to the simulator's thread. Has no effect while the simulator is stopped.
    void post(std::function<void(SwitchCore&)> work);
    [[nodiscard]] CallLog::Events callLog(const std::string& device) const {
        return m_callLogs.entries(device.empty() ? m_options.device : device);
    }

private:
    // Owner's thread only.
    SwitchOptions m_options;
    std::thread m_thread;

    CallLogStore m_callLogs;
    std::atomic<std::uint16_t> m_port{0};

    // The pointer is guarded by m_coreLock; the object belongs to the simulator's thread.
    std::mutex m_coreLock;
    std::unique_ptr<SwitchCore> m_core;
};

}  // namespace host
