#include "host/http/WebhookMetrics.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace host {
namespace {

void raise(prometheus::Counter& counter, std::uint64_t total) {
    counter.Increment(std::max(0.0, static_cast<double>(total) - counter.Value()));
}

prometheus::Family<prometheus::Counter>& counters(prometheus::Registry& registry, const char* name,
                                                  const char* help) {
    return prometheus::BuildCounter().Name(name).Help(help).Register(registry);
}

}  // namespace

WebhookMetrics::WebhookMetrics(prometheus::Registry& registry)
    : m_deliveries(counters(registry, "calljournal_webhook_deliveries_total",
                            "Attempts to deliver an event, by their result")),
      m_dropped(counters(registry, "calljournal_webhook_events_dropped_total",
                         "Events that have waited too long for a receiver")),
      m_waiting(prometheus::BuildGauge()
                    .Name("calljournal_webhook_events_waiting")
                    .Help("Events that wait for a receiver")
                    .Register(registry)) {}

void WebhookMetrics::update(const std::vector<WebhookState>& webhooks) {
    for (std::size_t at = 0; at < webhooks.size(); ++at) {
        const WebhookState& state = webhooks[at];
        const prometheus::Labels labels{{"hook", std::to_string(at + 1)}, {"receiver", state.receiver}};
        const auto with = [&labels](const char* result) {
            prometheus::Labels all = labels;
            all.emplace("result", result);
            return all;
        };
        raise(m_deliveries.Add(with("sent")), state.sent);
        raise(m_deliveries.Add(with("failed")), state.failed);
        raise(m_dropped.Add(labels), state.dropped);
        m_waiting.Add(labels).Set(static_cast<double>(state.waiting));
    }
}

}  // namespace host
