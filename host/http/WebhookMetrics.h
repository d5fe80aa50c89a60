#pragma once

#include <prometheus/counter.h>
#include <prometheus/gauge.h>
#include <prometheus/registry.h>

#include <string>
#include <vector>

#include "host/webhooks/Webhook.h"

namespace host {

/// The metrics of webhooks, each with its number in the configuration and its receiver. Not synchronised.
class WebhookMetrics {
public:
    /// `registry` is borrowed.
    WebhookMetrics(prometheus::Registry& registry);

    void update(const std::vector<WebhookState>& webhooks);

private:
    prometheus::Family<prometheus::Counter>& m_deliveries;
    prometheus::Family<prometheus::Counter>& m_dropped;
    prometheus::Family<prometheus::Gauge>& m_waiting;
};

}  // namespace host
