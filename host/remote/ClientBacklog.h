#pragma once

#include <cstddef>
#include <deque>
#include <mutex>
#include <optional>
#include <string>

namespace host {

/// The frames that wait to be written to one client, in order.
///
/// Notifications come whether or not the client reads, so their bytes are bounded. Answers are not counted: the server
/// takes the next request of a client only when the answer to the last one is on its way, so at most one waits here.
///
/// Threads: any thread may add; one writer takes.
class ClientBacklog {
public:
    enum class Added {
        eQueued,    ///< the writer is at work already
        eWakeUp,    ///< the writer is idle and has to be told
        eOverflow,  ///< the bound is exceeded: the client is to be cut off; told once
        eClosed,    ///< the client is gone, or is being cut off; the frame is dropped
    };

    explicit ClientBacklog(std::size_t maxNotificationBytes) : m_maxBytes(maxNotificationBytes) {}

    [[nodiscard]] Added addNotification(std::string frame);
    [[nodiscard]] Added addResponse(std::string frame);

    /// The next frame to write. When there is none, the writer counts as idle until `eWakeUp`.
    [[nodiscard]] std::optional<std::string> take();

    /// Drops everything, now and later.
    void close();

private:
    struct Waiting {
        std::string frame;
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
