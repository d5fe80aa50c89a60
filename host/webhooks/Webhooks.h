#pragma once

#include <memory>
#include <vector>

#include "host/webhooks/Webhook.h"

namespace host {

class Database;

/// Sends the events of all lines to the webhooks (docs/webhooks.md). A thread of its own sends them; the
/// webhooks do not wait for each other.
///
/// Construct, start and stop from one thread.
class Webhooks {
public:
    /// All are borrowed and outlive the object; `digits` may be null. Throws `RemoteError` if libcurl cannot
    /// be loaded.
    Webhooks(Database& database, std::vector<WebhookSettings> webhooks, DigitAnalysisServiceIfc* digits);
    /// Calls `stop`.
    ~Webhooks();
    Webhooks(const Webhooks&) = delete;
    Webhooks& operator=(const Webhooks&) = delete;

    /// Call it before the first event is added.
    void start();
    /// Aborts what is being sent: it is sent again after the next start, as are the events that wait.
    /// Idempotent.
    void stop();

    /// Call it after a transaction that has added events. Does not block. Any thread may call.
    void eventAdded();

    /// In the order of the configuration. Any thread may call.
    [[nodiscard]] std::vector<WebhookState> states() const;

private:
    class Impl;
    const std::unique_ptr<Impl> m_impl;
};

}  // namespace host
