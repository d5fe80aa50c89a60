#pragma once

#include <map>
#include <mutex>
#include <string>

#include "host/switch/call-log/CallLog.h"

namespace host {

/// The call logs of a simulated switch, one a device, kept as long as the simulator lives, however often it is stopped.
/// Threads: any; it has a lock of its own.
class CallLogStore {
public:
    /// Does `work` with the log of `device` and gives on what it answers.
    template <typename Work>
    auto change(const std::string& device, Work work) {
        const std::lock_guard lock(m_mutex);
        return work(m_logs[keyOf(device)]);
    }

    [[nodiscard]] CallLog::Events entries(const std::string& device) const;

private:
    /// Devices that are written differently are one.
    [[nodiscard]] static std::string keyOf(const std::string& device);

    mutable std::mutex m_mutex;
    std::map<std::string, CallLog> m_logs;
};

}  // namespace host
