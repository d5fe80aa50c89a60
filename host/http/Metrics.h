#pragma once

#include <atomic>
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

class LineMetrics;

/// The metrics of the service, in Prometheus' text format. Thread-safe.
///
/// Those of lines have the line as a label while there are at most `mostLines`; else there is one value, for
/// all lines together.
class Metrics final {
public:
    /// The values of one line, or of all, that are measured at each request.
    struct LineGauges {
        bool isMonitored = false;
        std::size_t liveCallCount = 0;
        std::map<ListName, std::size_t> entries;
        std::size_t unviewed = 0;
    };
    /// The values that are measured at each request.
    struct Gauges {
        /// The links to switches that are connected, and all.
        std::size_t connectedSwitches = 0;
        std::size_t switches = 0;
        std::size_t lines = 0;
        std::size_t monitoredLines = 0;
        /// By device, if `isByLine`; else one, with an empty key.
        std::map<std::string, LineGauges> ofLines;
        /// Event streams ("http") and clients of the Unix socket ("remote"), subscribed or not.
        std::map<std::string, std::size_t> observers;
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

    /// `version` is the program's.
    explicit Metrics(const std::string& version, std::size_t mostLines = 100);
    ~Metrics();
    Metrics(const Metrics&) = delete;
    Metrics& operator=(const Metrics&) = delete;

    void switchEvent(std::string_view kind);
    /// `calls` is the number of ended calls that the change has filed.
    void databaseWrote(std::chrono::duration<double> time, std::size_t calls);
    void requestHandled(const RequestReport& report);

    [[nodiscard]] std::string text(const Gauges& gauges);

    /// True if the metrics of so many lines have the line as a label.
    [[nodiscard]] bool isByLine(std::size_t lines) const noexcept { return lines <= m_mostLines; }

private:
    friend class LineMetrics;
    class Registered;

    const std::size_t m_mostLines;
    std::atomic<std::size_t> m_lines{0};
    const std::unique_ptr<Registered> m_registered;
};

/// The counters of one line: as an observer of its journal it counts the filed calls. Its values leave the
/// metrics with it. Thread-safe.
class LineMetrics final : public JournalServiceObserverIfc {
public:
    /// `metrics` is borrowed and outlives the object. One object exists for a line.
    LineMetrics(Metrics& metrics, std::string line);
    virtual ~LineMetrics();
    LineMetrics(const LineMetrics&) = delete;
    LineMetrics& operator=(const LineMetrics&) = delete;

    // JournalServiceObserverIfc
    void missedCallsCountUpdate(int /*count*/) override {}
    void missedCallsUpdate(MissedCallItem item, std::string entryId, ActionType action) override;
    void dialledCallsUpdate(DialledCallItem item, std::string entryId, ActionType action) override;
    void receivedCallsUpdate(ReceivedCallItem item, std::string entryId, ActionType action) override;
    void forwardedCallsUpdate(ForwardedCallItem item, std::string entryId, ActionType action) override;
    void callBacksUpdate(CallBackItem item, std::string entryId, ActionType action) override;
    void callBacksCountUpdate(int /*count*/) override {}

private:
    void filed(ListName list, ActionType action);

    Metrics& m_metrics;
    const std::string m_line;
};

}  // namespace host
