#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

namespace host {

/// One message that the simulated switch received or sent.
struct SwitchLogEntry {
    enum class Direction { eReceived, eSent };

    Direction direction = Direction::eReceived;
    /// Counts the connections from 1.
    int client = 0;
    int invokeId = 0;
    /// The local name of the message ("MonitorStart").
    std::string name;
    std::string xml;
};

/// The messages of a simulated switch in order, for tests and for whoever watches it. Keeps the newest 10,000.
/// Threads: any; it has a lock of its own, and no caller's code runs on the simulator's thread.
class MessageTrace {
public:
    static constexpr std::size_t kKept = 10000;

    void add(SwitchLogEntry entry);

    [[nodiscard]] std::vector<SwitchLogEntry> entries() const;
    [[nodiscard]] std::size_t count(SwitchLogEntry::Direction direction, const std::string& name) const;

    /// Waits until at least `number` messages called `name` went in `direction`; false after `limit`.
    [[nodiscard]] bool await(SwitchLogEntry::Direction direction, const std::string& name,
                             std::size_t number = 1,
                             std::chrono::milliseconds limit = std::chrono::seconds(10)) const;

private:
    [[nodiscard]] std::size_t countLocked(SwitchLogEntry::Direction direction, const std::string& name) const;

    // Guarded by m_mutex.
    std::deque<SwitchLogEntry> m_entries;
    mutable std::mutex m_mutex;
    mutable std::condition_variable m_added;
};

}  // namespace host
