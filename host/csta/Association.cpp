#include "host/csta/Association.h"

#include <algorithm>
#include <charconv>
#include <system_error>
#include <utility>

#include "host/csta-wire/WireDocument.h"
#include "host/csta/LinkLog.h"

namespace host {

namespace {

std::chrono::seconds grantedDuration(const WireDocument& document, std::chrono::seconds asked) {
    const std::string text = childText(document.root(), "actualSessionDuration");
    int seconds = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), seconds);
    return result.ec == std::errc() && seconds > 0 ? std::chrono::seconds(seconds) : asked;
}

std::string refusalOf(const Answer& answer) {
    if (answer.kind == Answer::Kind::eAnswered) {
        const std::string word = firstText(childNamed(answer.document->root(), "errorCode"));
        return "the switch refuses the session: " +
               (word.empty() ? std::string(answer.document->name()) : word);
    }
    return answer.kind == Answer::Kind::eRefused ? "the switch refuses the session: " + answer.value
                                                 : std::string("the switch does not answer for the session");
}

}  // namespace

Association::Association(asio::io_context& io, bool withSession, const LinkMessages& messages, Send send,
                         Handlers handlers)
    : m_withSession(withSession),
      m_messages(messages),
      m_send(std::move(send)),
      m_handlers(std::move(handlers)),
      m_timer(io) {}

void Association::open() {
    if (!m_withSession) {
        m_ready = true;
        m_handlers.ready();
        return;
    }
    m_send(m_messages.startApplicationSession(static_cast<int>(kDuration.count())),
           [this](const Answer& answer) { started(answer); });
}

void Association::connectionLost() {
    m_ready = false;
    m_sessionId.clear();
    m_timer.cancel();
}

void Association::terminated() {
    if (m_withSession) {
        m_handlers.failed("the switch has ended the session");
    }
}

void Association::started(const Answer& answer) {
    if (answer.kind == Answer::Kind::eLost) {
        return;
    }
    if (!answer.isOfKind("StartApplicationSessionPosResponse")) {
        m_handlers.failed(refusalOf(answer));
        return;
    }
    m_sessionId = childText(answer.document->root(), "sessionID");
    CSTA_LINK_LOG(5, "session %s with the switch", m_sessionId.c_str());
    resetAtHalf(grantedDuration(*answer.document, kDuration));
    m_ready = true;
    m_handlers.ready();
}

void Association::resetAtHalf(std::chrono::seconds duration) {
    m_timer.expires_after(std::chrono::duration_cast<std::chrono::milliseconds>(duration) / 2);
    m_timer.async_wait([this, session = m_sessionId](std::error_code error) {
        if (!error && session == m_sessionId && m_ready) {
            resetTimer();
        }
    });
}

void Association::resetTimer() {
    m_send(m_messages.resetApplicationSessionTimer(m_sessionId, static_cast<int>(kDuration.count())),
           [this](const Answer& answer) {
               if (answer.kind == Answer::Kind::eLost) {
                   return;
               }
               if (!answer.isOfKind("ResetApplicationSessionTimerPosResponse")) {
                   m_handlers.failed(refusalOf(answer));
                   return;
               }
               resetAtHalf(grantedDuration(*answer.document, kDuration));
           });
}

}  // namespace host
