#pragma once

#include <chrono>
#include <functional>
#include <string>

#include <asio/io_context.hpp>
#include <asio/steady_timer.hpp>

#include "host/csta/LinkMessages.h"
#include "host/csta/PendingRequests.h"

namespace host {

/// Opens the association on a fresh connection, in the way that the configuration asks for:
///   "auto"                 nothing to wait for; the link is ready at once
///   "application-session"  1. StartApplicationSession  2. ready with the positive answer  3. the session timer is
///                          reset at half of the time that the switch granted
/// Whatever ends the session ends the connection; the next one begins anew. Reader thread only.
class Association {
public:
    using Send = std::function<void(const std::string& xml, PendingRequests::Handler handler)>;

    struct Handlers {
        std::function<void()> ready;
        /// The association cannot go on; the connection is to be given up.
        std::function<void(const std::string& why)> failed;
    };

    Association(asio::io_context& io, bool withSession, const LinkMessages& messages, Send send,
                Handlers handlers);

    void open();
    void connectionLost();
    /// The switch has said that the session is over.
    void terminated();
    [[nodiscard]] bool isReady() const noexcept { return m_ready; }

private:
    // Asked for; the switch's answer rules.
    static constexpr std::chrono::seconds kDuration{600};

    void started(const Answer& answer);
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
