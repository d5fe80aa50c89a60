#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <system_error>

#include "host/tls/StreamSocket.h"

namespace host {

/// Writes frames to a socket, one after the other. Call from the thread that runs the socket's io_context
/// only.
class SendQueue {
public:
    /// Called when the frame has been written, or could not be written; never after `clear`. May call
    /// `clear`.
    using Handler = std::function<void(const std::error_code&)>;

    /// `socket` must outlive the object and every write in progress.
    explicit SendQueue(StreamSocket& socket) : m_socket(socket) {}

    /// Queues the bytes of one frame. `done` is stored until the frame is written, so it may own the object.
    void push(std::string bytes, Handler done);
    /// Drops all frames. Requires: the socket is closed.
    void clear();
    [[nodiscard]] std::size_t bytes() const noexcept { return m_bytes; }

private:
    struct Entry {
        std::string bytes;
        Handler done;
    };
    using Entries = std::deque<Entry>;

    void write();

    StreamSocket& m_socket;
    // Shared with the write in progress, which thus detects a `clear`.
    std::shared_ptr<Entries> m_entries = std::make_shared<Entries>();
    std::size_t m_bytes = 0;
};

}  // namespace host
