#pragma once

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

#include "host/switch/server/SwitchOptions.h"

namespace journaltest {

/// The messages of a simulated switch, in order. Thread-safe. Must outlive the switch.
class MessageTrace {
public:
    using Direction = host::SwitchMessage::Direction;

    /// For `SwitchOptions::messageListener`.
    [[nodiscard]] std::function<void(const host::SwitchMessage&)> listener() {
        return [this](const host::SwitchMessage& message) {
            const std::lock_guard lock(m_mutex);
            m_messages.push_back(message);
            m_added.notify_all();
        };
    }
    [[nodiscard]] std::vector<host::SwitchMessage> messages() const {
        const std::lock_guard lock(m_mutex);
        return m_messages;
    }
    [[nodiscard]] std::size_t count(Direction direction, const std::string& name) const {
        const std::lock_guard lock(m_mutex);
        return countLocked(direction, name);
    }
    /// Waits for at least `number` messages of that name. Returns false on a timeout.
    [[nodiscard]] bool await(Direction direction, const std::string& name, std::size_t number = 1) const {
        std::unique_lock lock(m_mutex);
        return m_added.wait_for(lock, std::chrono::seconds(20),
                                [&] { return countLocked(direction, name) >= number; });
    }

private:
    [[nodiscard]] std::size_t countLocked(Direction direction, const std::string& name) const {
        return static_cast<std::size_t>(
            std::count_if(m_messages.begin(), m_messages.end(), [&](const host::SwitchMessage& message) {
                return message.direction == direction && message.name == name;
            }));
    }

    mutable std::mutex m_mutex;
    mutable std::condition_variable m_added;
    // Guarded by m_mutex.
    std::vector<host::SwitchMessage> m_messages;
};

}  // namespace journaltest
