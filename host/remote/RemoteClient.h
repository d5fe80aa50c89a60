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

/// A client of the server in a data directory. Sends requests (`journalxml::buildRequest`) and receives
/// responses and notifications.
///
/// Not thread-safe. Errors: operations throw `RemoteError`; do not use the client afterwards.
class RemoteClient {
public:
    static constexpr std::chrono::seconds kLimit{30};

    /// Connects. Throws if no server runs there.
    explicit RemoteClient(const std::filesystem::path& dataDirectory);

    /// Sets the line of all requests, before the first one. Throws if there is no such line.
    void setLine(const std::string& device);

    /// Sends one request and waits for its response, which may be empty. Stores notifications that arrive
    /// meanwhile for `nextNotification`. Throws if there is no response within `limit`.
    [[nodiscard]] std::string call(const std::string& request, std::chrono::milliseconds limit = kLimit);

    /// The same; std::nullopt if the descriptor `interrupt` becomes readable first.
    [[nodiscard]] std::optional<std::string> call(const std::string& request, int interrupt);

    /// Removes and returns the notifications that arrived during calls.
    [[nodiscard]] std::deque<std::string> takeNotifications() { return std::exchange(m_notifications, {}); }

    /// Waits for the next notification. Returns std::nullopt if the descriptor `interrupt` becomes readable
    /// first; -1 means no descriptor. Throws if the server disconnects.
    [[nodiscard]] std::optional<std::string> nextNotification(int interrupt = -1);

private:
    using Deadline = std::optional<std::chrono::steady_clock::time_point>;

    std::optional<std::string> exchange(RemoteFrame::Kind kind, const std::string& request,
                                        std::chrono::milliseconds limit, int interrupt);
    void sendAll(const std::string& bytes, const Deadline& deadline);
    /// Returns one frame, or std::nullopt if it is interrupted before the frame is complete.
    std::optional<RemoteFrame> receive(const Deadline& deadline, int interrupt);
    std::optional<RemoteFrame> takeReceived();
    /// Returns false if it is interrupted.
    bool waitUntilReady(short events, const Deadline& deadline, int interrupt) const;

    const std::string m_path;
    FileDescriptor m_socket;
    std::string m_received;
    std::deque<std::string> m_notifications;
    std::uint32_t m_lastId = 0;
};

}  // namespace host
