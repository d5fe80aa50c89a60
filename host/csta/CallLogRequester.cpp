#include "host/csta/CallLogRequester.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <system_error>
#include <utility>

#include <asio/steady_timer.hpp>

#include "host/csta-wire/CallLogWire.h"
#include "host/csta-wire/WireDocument.h"
#include "host/csta/requests/LinkLog.h"
#include "host/log/PrivateText.h"
#include "platform/csta/CSTAResponses.h"

namespace host {

namespace {

std::string textOf(const CallLogEntryRequest& request) {
    const char* const what = request.action == CallLogEntryRequest::eDeleteOne ? "delete" : "deleteAll";
    return std::string(what) + " of log " + std::to_string(request.logTarget) +
           (request.subscriberNumber.empty() ? "" : ", number " + loggedNumber(request.subscriberNumber));
}

}  // namespace

CallLogPatience::Clock::duration CallLogPatience::next(Clock::time_point now) {
    if (m_lastEnd == Clock::time_point() || now - m_lastEnd > kGap) {
        m_left = m_silent ? brief() : m_timeout * 6 / 5;
        m_briefly = m_withoutResponse = m_silent;
    }
    m_granted = std::min(m_left, m_withoutResponse ? brief() : m_timeout);
    return m_granted;
}

void CallLogPatience::ended(Clock::time_point begin, Clock::time_point now, bool responded) {
    m_left = std::max(m_left - (now - begin), Clock::duration::zero());
    m_lastEnd = now;
    m_withoutResponse = m_withoutResponse || !responded;
    if (responded && now - begin <= brief()) {
        m_silent = false;
        m_left += std::exchange(m_briefly, false) ? m_timeout * 6 / 5 - brief() : Clock::duration::zero();
    } else if (!responded && m_granted >= brief()) {
        m_silent = true;
    }
}

void CallLogPatience::respondedLate(Clock::time_point begin, Clock::time_point now) {
    if (now - begin <= brief()) {
        m_silent = false;
        m_left = std::max(m_left, brief());
    }
}

/// The wait for the response to one request. Ends once: with the response, or when the time is over.
class CallLogRequester::Wait : public std::enable_shared_from_this<Wait> {
public:
    Wait(CallLogRequester& requester, CallLogEntryRequest request, CompleteRequest complete)
        : m_requester(requester),
          m_request(std::move(request)),
          m_complete(std::move(complete)),
          m_begin(CallLogPatience::Clock::now()),
          m_timer(requester.m_io) {}

    void begin() {
        const auto time = m_requester.m_patience.next(m_begin);
        m_requester.m_echoes.requested(m_request, m_begin);
        m_requester.m_channel.send(
            m_requester.m_messages.escape(m_request),
            [self = shared_from_this()](const SwitchResponse& response) { self->responded(response); });
        if (m_ended) {
            return;
        }
        if (time == CallLogPatience::Clock::duration::zero()) {
            end({RequestOutcome::kTimedOut, nullptr}, false);
            return;
        }
        m_timer.expires_after(time);
        m_timer.async_wait([self = shared_from_this()](std::error_code error) {
            if (!error && !self->m_ended) {
                self->end({RequestOutcome::kTimedOut, nullptr}, false);
            }
        });
    }

private:
    void responded(const SwitchResponse& response) {
        using Kind = SwitchResponse::Kind;
        const bool isResponse = response.kind == Kind::eResponse || response.kind == Kind::eRefused;
        if (response.kind == Kind::eRefused) {
            CSTA_LINK_LOG(3, "the switch%s refuses a request about its call log: %s (%s)",
                          m_ended ? " responds late and" : "", loggedReason(response.value).c_str(),
                          textOf(m_request).c_str());
        } else if (!isResponse) {
            CSTA_LINK_LOG(3, "no response of the switch to a request about its call log: %s",
                          textOf(m_request).c_str());
        } else if (m_ended) {
            CSTA_LINK_LOG(4, "the switch responds late to a request about its call log: %s",
                          textOf(m_request).c_str());
        }
        const auto now = CallLogPatience::Clock::now();
        if (isResponse) {
            m_requester.m_echoes.requested(m_request, now);
        }
        if (!m_ended) {
            end(RequestOutcome::of<CSTAEscapeResponse>(response), isResponse);
        } else if (isResponse) {
            m_requester.m_patience.respondedLate(m_begin, now);
        }
    }

    void end(RequestOutcome outcome, bool responded) {
        m_ended = true;
        m_timer.cancel();
        m_requester.m_patience.ended(m_begin, CallLogPatience::Clock::now(), responded);
        m_complete(std::move(outcome));
    }

    CallLogRequester& m_requester;
    const CallLogEntryRequest m_request;
    const CompleteRequest m_complete;
    const CallLogPatience::Clock::time_point m_begin;
    asio::steady_timer m_timer;
    bool m_ended = false;
};

void CallLogRequester::request(const CallLogEntryRequest& request, const CompleteRequest& complete) {
    if (!m_channel.isReady()) {
        CSTA_LINK_LOG(
            3, "a request about the switch's call log is not sent, for the switch is not connected: %s",
            textOf(request).c_str());
        complete({RequestOutcome::kConnectionLost, nullptr});
        return;
    }
    std::make_shared<Wait>(*this, request, complete)->begin();
}

bool CallLogRequester::isEcho(const WireDocument& event) {
    if (event.name() != "PrivateEvent") {
        return false;
    }
    const std::optional<CallLogEntryEvent> entry = readCallLogEntry(event.root());
    if (!entry || !m_echoes.isEcho(*entry, CallLogEchoes::Clock::now())) {
        return false;
    }
    CSTA_LINK_LOG(5, "the switch reports the phone's own deletion in log %d, number %s; ignored",
                  static_cast<int>(entry->logTarget), loggedNumber(entry->subscriberNumber).c_str());
    return true;
}

}  // namespace host
