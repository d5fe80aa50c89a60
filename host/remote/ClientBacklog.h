#pragma once

#include <cstddef>
#include <deque>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace host {

/// The queue of frames to write to one client.
///
/// Notifications arrive even if the client does not read, so their bytes are limited; a notification that is
/// longer than the limit is queued if no other waits. Responses are not counted: the server reads the next
/// request of a client only after it has written the last response, so at most one response is queued.
///
/// Thread-safe for adding and closing. Call `take` from the one writer only.
class ClientBacklog {
public:
    enum class Added {
        eQueued,    ///< the writer is active already
        eWakeUp,    ///< the writer is idle; wake it
        eOverflow,  ///< the limit is exceeded: disconnect the client; returned once
        eClosed,    ///< the client is disconnected; the frame is dropped
    };

    using Frame = std::shared_ptr<const std::string>;

    explicit ClientBacklog(std::size_t maxNotificationBytes) : m_maxBytes(maxNotificationBytes) {}

    [[nodiscard]] Added addNotification(Frame frame);
    [[nodiscard]] Added addResponse(Frame frame);

    /// Frames to write, one after the other.
    struct Batch {
        std::vector<Frame> frames{};
        /// The batch ends with a response.
        bool hasResponse = false;
    };
    /// Replaces `batch` by the next frames: up to a response, and no more than `kBatchBytes` and
    /// `kBatchFrames` if they are several. If there is none, returns false, and the writer is idle until
    /// `eWakeUp`.
    [[nodiscard]] bool take(Batch& batch);
    static constexpr std::size_t kBatchBytes = 64U * 1024U;
    /// The system writes so many with one call.
    static constexpr std::size_t kBatchFrames = 64;

    /// Drops all frames, present and future.
    void close();

private:
    struct Waiting {
        Frame frame;
        std::size_t counted;
    };

    Added add(Waiting waiting);

    // Constant after construction.
    const std::size_t m_maxBytes;

    std::mutex m_mutex;
    // Guarded by m_mutex.
    std::deque<Waiting> m_waiting;
    std::size_t m_bytes = 0;
    bool m_writing = false;
    bool m_closed = false;
};

}  // namespace host
