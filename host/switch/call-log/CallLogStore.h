#pragma once

#include <map>
#include <mutex>
#include <string>

#include "host/switch/call-log/CallLog.h"

namespace host {

/// The call logs of a simulated switch, one per device. They survive a restart of the simulator. Thread-safe.
class CallLogStore {
public:
    /// Calls `work` with the log of `device`, under the lock, and returns its result.
    template <typename Work>
    auto change(const std::string& device, Work work) {
        const std::lock_guard lock(m_mutex);
        return work(m_logs[keyOf(device)]);
    }

    [[nodiscard]] CallLog::Events entries(const std::string& device) const;

private:
    /// Equal for all written forms of the same device.
    [[nodiscard]] static std::string keyOf(const std::string& device);

    mutable std::mutex m_mutex;
    std::map<std::string, CallLog> m_logs;
};

}  // namespace host
