#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/http/RequestMetrics.h"
#include "host/log/Log.h"
#include "host/presentation/ListName.h"
#include "host/webhooks/Webhook.h"
#include "journalservice/JournalServiceObserverIfc.h"

namespace host {

/// The metrics of the service, in Prometheus' text format. As an observer of the journal it counts the filed
/// calls. Thread-safe.
class Metrics final : public JournalServiceObserverIfc {
public:
    /// The values that are measured at each request.
    struct Gauges {
        bool switchConnected = false;
        bool lineMonitored = false;
        std::size_t liveCallCount = 0;
        /// Event streams ("http") and clients of the Unix socket ("remote"), subscribed or not.
        std::map<std::string, std::size_t> observers;
        std::map<ListName, std::size_t> entries;
        std::size_t unviewed = 0;
        /// The changes that the database refuses: those that are kept, and those that were lost.
        std::size_t keptChanges = 0;
        std::uint64_t lostChanges = 0;
        /// Bytes of the program's memory that the databases use.
        std::int64_t databaseMemory = 0;
        /// Since the program started.
        LogCounts log;
        std::uint64_t failedTries = 0;
        std::vector<WebhookState> webhooks;
    };

    /// `line` is a label of every metric but those of the process; `version` is the program's.
    Metrics(const std::string& line, const std::string& version);
    virtual ~Metrics();
    Metrics(const Metrics&) = delete;
    Metrics& operator=(const Metrics&) = delete;

    void switchEvent(std::string_view kind);
    /// `calls` is the number of ended calls that the change has filed.
    void databaseWrote(std::chrono::duration<double> time, std::size_t calls);
    void requestHandled(const RequestReport& report);

    [[nodiscard]] std::string text(const Gauges& gauges);

    // JournalServiceObserverIfc
    void missedCallsCountUpdate(int /*count*/) override {}
    void missedCallsUpdate(MissedCallItem item, std::string entryId, ActionType action) override;
    void dialledCallsUpdate(DialledCallItem item, std::string entryId, ActionType action) override;
    void receivedCallsUpdate(ReceivedCallItem item, std::string entryId, ActionType action) override;
    void forwardedCallsUpdate(ForwardedCallItem item, std::string entryId, ActionType action) override;
    void callBacksUpdate(CallBackItem item, std::string entryId, ActionType action) override;
    void callBacksCountUpdate(int /*count*/) override {}

private:
    class Registered;

    void filed(ListName list, ActionType action);

    const std::unique_ptr<Registered> m_registered;
};

}  // namespace host
