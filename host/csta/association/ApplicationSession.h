#pragma once

#include <chrono>
#include <functional>
#include <string>

#include <asio/io_context.hpp>
#include <asio/steady_timer.hpp>

#include "host/csta/requests/LinkMessages.h"
#include "host/csta/requests/PendingRequests.h"

namespace host {

/// Opens the association on a new connection, as configured:
///   "auto"                 ready at once
///   "application-session"  1. StartApplicationSession
///                          2. ready on the positive response
///                          3. the session timer is reset after half of the duration that the switch granted
/// The end of the session ends the connection; the next connection opens a new session. Reader thread only.
class ApplicationSession {
public:
    using Send = std::function<void(const std::string& xml, PendingRequests::Handler handler)>;

    struct Handlers {
        std::function<void()> ready;
        /// The association has failed: close the connection.
        std::function<void(const std::string& reason)> failed;
    };

    ApplicationSession(asio::io_context& io, bool withSession, const LinkMessages& messages, Send send,
                       Handlers handlers);

    void open();
    void connectionLost();
    /// The switch has ended the session.
    void terminated();
    [[nodiscard]] bool isReady() const noexcept { return m_ready; }

private:
    // Requested; the duration in the response applies.
    static constexpr std::chrono::seconds kDuration{600};

    void started(const SwitchResponse& response);
    void resetAtHalf(std::chrono::seconds duration);
    void resetTimer();

    const bool m_withSession;
    const LinkMessages& m_messages;
    const Send m_send;
    const Handlers m_handlers;

    asio::steady_timer m_timer;
    bool m_ready = false;
    std::string m_sessionId;
};

}  // namespace host
