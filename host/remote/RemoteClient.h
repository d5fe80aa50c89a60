#pragma once

#include <chrono>
#include <cstdint>
#include <deque>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>

#include "host/framework/FileDescriptor.h"
#include "host/remote/RemoteFrame.h"

namespace host {

/// A client of the server in a data directory: sends requests (`journalxml::buildRequest`), and takes answers and
/// notifications as they come.
///
/// Threads: one. Errors: `RemoteError`; a client that has thrown one is of no further use.
class RemoteClient {
public:
    /// Connects. Throws when no server runs there.
    explicit RemoteClient(const std::filesystem::path& dataDirectory);

    /// Sends one request and waits for its answer, empty when it has no text. Notifications that come meanwhile are
    /// kept for `nextNotification`.
    [[nodiscard]] std::string call(const std::string& request,
                                   std::chrono::milliseconds limit = std::chrono::seconds(30));

    /// The notifications that came during calls and are not taken yet.
    [[nodiscard]] std::deque<std::string> takeNotifications() { return std::exchange(m_notifications, {}); }

    /// The next notification, as soon as there is one; nothing when `interrupt`, a descriptor, became readable first.
    /// -1 stands for none. Throws when the server goes away.
    [[nodiscard]] std::optional<std::string> nextNotification(int interrupt = -1);

private:
    using Deadline = std::optional<std::chrono::steady_clock::time_point>;

    std::string exchange(RemoteFrame::Kind kind, const std::string& text, std::chrono::milliseconds limit);
    void sendAll(const std::string& bytes, const Deadline& deadline);
    /// One frame; nothing when it was interrupted before the frame was complete.
    std::optional<RemoteFrame> receive(const Deadline& deadline, int interrupt);
    std::optional<RemoteFrame> takeReceived();
    /// False when it was interrupted.
    bool waitUntilReady(short events, const Deadline& deadline, int interrupt) const;

    const std::string m_path;
    FileDescriptor m_socket;
    std::string m_received;
    std::deque<std::string> m_notifications;
    std::uint32_t m_lastId = 0;
};

}  // namespace host
