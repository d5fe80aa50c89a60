#pragma once

#include <chrono>

#include <asio/io_context.hpp>

#include "host/csta/CallLogEchoes.h"
#include "host/csta/requests/LinkMessages.h"
#include "host/csta/requests/RequestChannel.h"
#include "host/csta/requests/RequestOutcome.h"
#include "platform/csta/CallLogEntryRequest.h"

namespace host {

class WireDocument;

/// Limits the time for which the requests of one burst are waited for. The requests of one change of the
/// lists are such a burst, and no call is filed meanwhile. Requests belong to one burst if less than a
/// second lies between the end of one and the begin of the next.
///
///     each request of a burst                            at most the timeout
///     each request after one without a response in time  at most 1/20 of the timeout
///     the whole burst                                    6/5 of the timeout; the rest is not waited for
///
/// A switch that left a request without a response counts as silent until it responds within 1/20 of the
/// timeout. For a silent switch, a whole burst is waited for at most 1/20 of the timeout. A response to a
/// request that is not waited for any more, within 1/20 of the timeout, allows one such wait.
///
/// Not thread-safe.
class CallLogPatience {
public:
    using Clock = std::chrono::steady_clock;

    explicit CallLogPatience(std::chrono::milliseconds timeout) : m_timeout(timeout) {}

    /// The time for which a request that begins now is waited for; zero: not at all.
    [[nodiscard]] Clock::duration next(Clock::time_point now);
    /// Call when the wait is over: after a response, or without.
    void ended(Clock::time_point begin, Clock::time_point now, bool responded);
    /// Call for a response after the wait.
    void respondedLate(Clock::time_point begin, Clock::time_point now);

private:
    static constexpr std::chrono::seconds kGap{1};

    [[nodiscard]] Clock::duration brief() const { return m_timeout / 20; }

    const Clock::duration m_timeout;
    Clock::time_point m_lastEnd{};
    Clock::duration m_left{};     // of the burst
    Clock::duration m_granted{};  // to the current request
    bool m_silent = false;
    bool m_briefly = false;  // the burst has begun while the switch was silent
    bool m_withoutResponse = false;
};

/// Sends the phone's requests about the switch's call log. Every request is sent while the switch is
/// connected; how long its sender waits is up to `CallLogPatience`. A response that comes later is logged
/// only. Reader thread only.
class CallLogRequester {
public:
    /// All references must outlive the object.
    CallLogRequester(asio::io_context& io, RequestChannel& channel, const LinkMessages& messages,
                     std::chrono::milliseconds timeout)
        : m_io(io), m_channel(channel), m_messages(messages), m_patience(timeout) {}

    /// Without a connection the request fails at once, as the library expects of a switch that is not
    /// connected. It is not queued.
    void request(const CallLogEntryRequest& request, const CompleteRequest& complete);
    /// True if the event is the echo of a request. Call for each event of the switch.
    [[nodiscard]] bool isEcho(const WireDocument& event);

private:
    class Wait;

    asio::io_context& m_io;
    RequestChannel& m_channel;
    const LinkMessages& m_messages;
    CallLogPatience m_patience;
    CallLogEchoes m_echoes;
};

}  // namespace host
