#include "host/csta/association/ApplicationSession.h"

#include <algorithm>
#include <charconv>
#include <system_error>
#include <utility>

#include "host/csta-wire/WireDocument.h"
#include "host/csta/requests/LinkLog.h"

namespace host {

namespace {

std::chrono::seconds grantedDuration(const WireDocument& document, std::chrono::seconds requested) {
    const std::string text = childText(document.root(), "actualSessionDuration");
    int seconds = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), seconds);
    return result.ec == std::errc() && seconds > 0 ? std::chrono::seconds(seconds) : requested;
}

std::string refusalOf(const SwitchResponse& response) {
    if (response.kind == SwitchResponse::Kind::eResponse) {
        const std::string word = firstText(childNamed(response.document->root(), "errorCode"));
        return "the switch refuses the session: " +
               (word.empty() ? std::string(response.document->name()) : word);
    }
    return response.kind == SwitchResponse::Kind::eRefused
               ? "the switch refuses the session: " + response.value
               : std::string("the switch does not respond to the session request");
}

}  // namespace

ApplicationSession::ApplicationSession(asio::io_context& io, bool withSession, const LinkMessages& messages,
                                       Send send, Handlers handlers)
    : m_withSession(withSession),
      m_messages(messages),
      m_send(std::move(send)),
      m_handlers(std::move(handlers)),
      m_timer(io) {}

void ApplicationSession::open() {
    if (!m_withSession) {
        m_ready = true;
        m_handlers.ready();
        return;
    }
    m_send(m_messages.startApplicationSession(static_cast<int>(kDuration.count())),
           [this](const SwitchResponse& response) { started(response); });
}

void ApplicationSession::connectionLost() {
    m_ready = false;
    m_sessionId.clear();
    m_timer.cancel();
}

void ApplicationSession::terminated() {
    if (m_withSession) {
        m_handlers.failed("the switch has ended the session");
    }
}

void ApplicationSession::started(const SwitchResponse& response) {
    if (response.kind == SwitchResponse::Kind::eLost) {
        return;
    }
    if (!response.isNamed("StartApplicationSessionPosResponse")) {
        m_handlers.failed(refusalOf(response));
        return;
    }
    m_sessionId = childText(response.document->root(), "sessionID");
    CSTA_LINK_LOG(5, "session %s with the switch", m_sessionId.c_str());
    resetAtHalf(grantedDuration(*response.document, kDuration));
    m_ready = true;
    m_handlers.ready();
}

void ApplicationSession::resetAtHalf(std::chrono::seconds duration) {
    m_timer.expires_after(std::chrono::duration_cast<std::chrono::milliseconds>(duration) / 2);
    m_timer.async_wait([this, session = m_sessionId](std::error_code error) {
        if (!error && session == m_sessionId && m_ready) {
            resetTimer();
        }
    });
}

void ApplicationSession::resetTimer() {
    m_send(m_messages.resetApplicationSessionTimer(m_sessionId, static_cast<int>(kDuration.count())),
           [this](const SwitchResponse& response) {
               if (response.kind == SwitchResponse::Kind::eLost) {
                   return;
               }
               if (!response.isNamed("ResetApplicationSessionTimerPosResponse")) {
                   m_handlers.failed(refusalOf(response));
                   return;
               }
               resetAtHalf(grantedDuration(*response.document, kDuration));
           });
}

}  // namespace host
