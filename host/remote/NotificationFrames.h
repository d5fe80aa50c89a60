#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>

namespace host {

/// Makes the frames of notifications. The journal notifies all clients of a change, one after the other and
/// each by a few messages; their frames are made for the first client, and all share them.
///
/// Thread-safe.
class NotificationFrames {
public:
    using Frame = std::shared_ptr<const std::string>;

    /// The number of all stored unviewed missed entries, which clients get in place of that of the loaded
    /// ones; std::nullopt if the database fails. Any thread calls it.
    using Unviewed = std::function<std::optional<std::size_t>()>;

    /// `unviewed` may be empty.
    explicit NotificationFrames(Unviewed unviewed) : m_unviewed(std::move(unviewed)) {}

    /// The frame of a message of an observer proxy. A count of unviewed missed calls becomes that of all
    /// stored ones, as it is now.
    [[nodiscard]] Frame frameOf(const std::string& message);

private:
    const Unviewed m_unviewed;

    /// A message, and what was made of it.
    struct Made {
        std::string message{};
        bool isCount = false;
        std::optional<std::size_t> count{};
        Frame frame{};
    };
    [[nodiscard]] Made& madeOf(const std::string& message);

    std::mutex m_mutex;
    // Guarded by m_mutex.
    /// The last messages; no change has more.
    std::array<Made, 8> m_made;
    std::size_t m_oldest = 0;
};

}  // namespace host
