#pragma once

#include <atomic>
#include <cstdint>
#include <optional>
#include <set>
#include <string>

#include "host/journal-events/JournalEvent.h"
#include "host/webhooks/DeliveryBackoff.h"
#include "host/webhooks/HttpPost.h"
#include "host/webhooks/WaitingEvents.h"

namespace host {

struct WebhookSettings {
    std::string url;
    std::set<JournalEventKind> events;
    std::string secret;
    /// The file with the authorities of the receiver's certificate, in PEM form; empty for those of the
    /// system.
    std::string authorities{};
};

/// The state of a webhook for the metrics. A plain value.
struct WebhookState {
    /// The origin of the URL: "https://crm.example".
    std::string receiver;
    std::uint64_t sent = 0;
    std::uint64_t failed = 0;
    std::uint64_t dropped = 0;
    std::int64_t waiting = 0;
};

/// One webhook: sends its events one after the other, and repeats one that the receiver does not accept.
///
/// The delivering thread uses it, but for `state`.
class Webhook {
public:
    using Clock = DeliveryBackoff::Clock;

    /// Everything in `source`, and `transfers`, is borrowed. Throws `RemoteError`.
    Webhook(WebhookSettings settings, const WaitingEvents::Source& source, const CurlLibrary& curl,
            CURLM* transfers);

    /// Begins to send the next event, if there is one and its time has come.
    void sendNext(Clock::time_point now);
    /// The time from which `sendNext` may have something to do; std::nullopt while it sends.
    [[nodiscard]] std::optional<Clock::time_point> nextAttempt() const;
    /// Drops the events that wait too long, or are too many, unless it sends just now.
    void limit();

    [[nodiscard]] const HttpPost& post() const noexcept { return m_post; }
    /// Call it when libcurl has finished the transfer.
    void finished(CURLcode result);

    [[nodiscard]] WaitingEvents& events() noexcept { return m_events; }
    /// Any thread may call.
    [[nodiscard]] WebhookState state() const;

private:
    void failed(const std::string& reason);

    const WebhookSettings m_settings;
    const std::string m_receiver;
    WaitingEvents m_events;
    HttpPost m_post;
    DeliveryBackoff m_backoff;
    EventMessage m_message;
    std::string m_loggedFailure;

    std::atomic<std::uint64_t> m_sentCount{0};
    std::atomic<std::uint64_t> m_failedCount{0};
    std::atomic<std::uint64_t> m_droppedCount{0};
};

}  // namespace host
