#include "host/http/Metrics.h"

#include <malloc.h>
#include <prometheus/counter.h>
#include <prometheus/gauge.h>
#include <prometheus/histogram.h>
#include <prometheus/registry.h>
#include <prometheus/text_serializer.h>

#include <algorithm>
#include <mutex>

#include "host/http/ProcessMetrics.h"
#include "host/http/WebhookMetrics.h"

namespace host {
namespace {

template <typename Builder>
auto& family(Builder builder, prometheus::Registry& registry, const std::string& line, const char* name,
             const char* help) {
    return builder.Name(name).Help(help).Labels({{"line", line}}).Register(registry);
}

/// The bytes that are allocated now; what the allocator keeps for later is not counted.
double allocatedMemory() {
    const struct mallinfo2 info = mallinfo2();
    return static_cast<double>(info.uordblks) + static_cast<double>(info.hblkhd);
}

}  // namespace

class Metrics::Registered {
public:
    Registered(const std::string& line, const std::string& version)
        : m_line(line), requests(m_registry, line), m_webhooks(m_registry, line) {
        gauges("calljournal_build_info", "1; the version of the program is a label")
            .Add({{"version", version}})
            .Set(1);
        // Each counter exists from the start.
        forEachList([this]<typename Item>() { filed(ListTraits<Item>::kList); });
    }

    prometheus::Counter& filed(ListName list) { return m_filed.Add({{"list", std::string(wordOf(list))}}); }
    prometheus::Counter& events(std::string_view kind) { return m_events.Add({{"kind", std::string(kind)}}); }
    prometheus::Gauge& observers(const std::string& face) { return m_observers.Add({{"face", face}}); }
    prometheus::Gauge& memory(const char* use) { return m_memory.Add({{"use", use}}); }
    prometheus::Gauge& entries(ListName list) { return m_entries.Add({{"list", std::string(wordOf(list))}}); }

    /// Requests may report in another order than they measured.
    void raiseTotals(const Gauges& totals) {
        const std::lock_guard lock(m_mutex);
        raise(m_droppedLogLines, totals.log.dropped);
        raise(m_logErrors, totals.log.errors);
        raise(m_logWarnings, totals.log.warnings);
        raise(m_failedTries, totals.failedTries);
        raise(m_lostChanges, totals.lostChanges);
        m_webhooks.update(totals.webhooks);
    }

    std::string text() {
        {
            const std::lock_guard lock(m_mutex);
            m_process.update();
        }
        const prometheus::TextSerializer serializer;
        return serializer.Serialize(m_registry.Collect());
    }

private:
    static void raise(prometheus::Counter& counter, std::uint64_t total) {
        counter.Increment(std::max(0.0, static_cast<double>(total) - counter.Value()));
    }
    prometheus::Histogram& times(const char* name, const char* help) {
        return family(prometheus::BuildHistogram(), m_registry, m_line, name, help)
            .Add({}, prometheus::Histogram::BucketBoundaries{0.0005, 0.001, 0.0025, 0.005, 0.01, 0.025, 0.05,
                                                             0.1, 0.25, 0.5, 1, 2.5});
    }
    prometheus::Family<prometheus::Gauge>& gauges(const char* name, const char* help) {
        return family(prometheus::BuildGauge(), m_registry, m_line, name, help);
    }
    prometheus::Family<prometheus::Counter>& counters(const char* name, const char* help) {
        return family(prometheus::BuildCounter(), m_registry, m_line, name, help);
    }

    const std::string m_line;
    prometheus::Registry m_registry;
    prometheus::Family<prometheus::Counter>& m_filed = counters(
        "calljournal_calls_filed_total", "Calls that were filed, by list; callbacks as they were requested");
    prometheus::Family<prometheus::Counter>& m_events =
        counters("calljournal_switch_events_total", "Events of the switch, by kind");
    prometheus::Family<prometheus::Gauge>& m_observers =
        gauges("calljournal_observers",
               "Open event streams (http) and connected clients of the Unix socket (remote)");
    prometheus::Family<prometheus::Gauge>& m_entries =
        gauges("calljournal_list_entries", "Entries in each list");
    prometheus::Family<prometheus::Gauge>& m_memory =
        gauges("calljournal_memory_bytes", "Allocated memory, by its use");
    prometheus::Counter& m_droppedLogLines =
        counters("calljournal_log_lines_dropped_total",
                 "Lines of the log that were not taken in time, or could not be written")
            .Add({});
    prometheus::Family<prometheus::Counter>& m_logLines =
        counters("calljournal_log_problems_total", "Errors and warnings that were logged");
    prometheus::Counter& m_logErrors = m_logLines.Add({{"level", "error"}});
    prometheus::Counter& m_logWarnings = m_logLines.Add({{"level", "warning"}});
    prometheus::Counter& m_failedTries =
        counters("calljournal_refused_tokens_total", "Requests with a wrong, revoked or expired token")
            .Add({});
    prometheus::Counter& m_lostChanges =
        counters("calljournal_changes_lost_total", "Changes that the database refused and that were not kept")
            .Add({});
    std::mutex m_mutex;

public:
    prometheus::Gauge& unviewed =
        gauges("calljournal_unviewed_missed_calls", "Missed entries that are not viewed").Add({});
    prometheus::Gauge& connected =
        gauges("calljournal_switch_connected", "1 while the switch is connected").Add({});
    prometheus::Gauge& monitored =
        gauges("calljournal_line_monitored", "1 while the switch reports the line's calls").Add({});
    prometheus::Gauge& liveCallCount = gauges("calljournal_calls_up", "Calls of the line just now").Add({});
    prometheus::Gauge& keptChanges =
        gauges("calljournal_changes_kept", "Changes that the database refuses and that are repeated").Add({});
    prometheus::Histogram& writes =
        times("calljournal_database_write_seconds", "How long a change took until it was durable");
    prometheus::Histogram& filings = times("calljournal_call_filing_seconds",
                                           "How long the filing of an ended call took until it was durable");
    RequestMetrics requests;

private:
    ProcessMetrics m_process{m_registry};
    WebhookMetrics m_webhooks;
};

Metrics::Metrics(const std::string& line, const std::string& version)
    : m_registered(std::make_unique<Registered>(line, version)) {}

Metrics::~Metrics() = default;

void Metrics::switchEvent(std::string_view kind) {
    m_registered->events(kind).Increment();
}

void Metrics::databaseWrote(std::chrono::duration<double> time, std::size_t calls) {
    m_registered->writes.Observe(time.count());
    if (calls > 0) {
        m_registered->filings.Observe(time.count());
    }
}

void Metrics::requestHandled(const RequestReport& report) {
    m_registered->requests.handled(report);
}

std::string Metrics::text(const Gauges& gauges) {
    m_registered->connected.Set(gauges.switchConnected ? 1 : 0);
    m_registered->monitored.Set(gauges.lineMonitored ? 1 : 0);
    m_registered->liveCallCount.Set(static_cast<double>(gauges.liveCallCount));
    m_registered->unviewed.Set(static_cast<double>(gauges.unviewed));
    m_registered->raiseTotals(gauges);
    m_registered->keptChanges.Set(static_cast<double>(gauges.keptChanges));
    const auto ofDatabase = static_cast<double>(gauges.databaseMemory);
    m_registered->memory("database").Set(ofDatabase);
    m_registered->memory("other").Set(std::max(0.0, allocatedMemory() - ofDatabase));
    for (const auto& [face, count] : gauges.observers) {
        m_registered->observers(face).Set(static_cast<double>(count));
    }
    for (const auto& [list, count] : gauges.entries) {
        m_registered->entries(list).Set(static_cast<double>(count));
    }
    return m_registered->text();
}

void Metrics::missedCallsUpdate(MissedCallItem item, std::string /*entryId*/, ActionType action) {
    // A call leaves its entry unviewed. A viewed entry was only marked as viewed.
    if (!item.getViewed()) {
        filed(ListName::eMissed, action);
    }
}

void Metrics::dialledCallsUpdate(DialledCallItem /*item*/, std::string /*entryId*/, ActionType action) {
    filed(ListName::eDialled, action);
}

void Metrics::receivedCallsUpdate(ReceivedCallItem /*item*/, std::string /*entryId*/, ActionType action) {
    filed(ListName::eReceived, action);
}

void Metrics::forwardedCallsUpdate(ForwardedCallItem /*item*/, std::string /*entryId*/, ActionType action) {
    filed(ListName::eForwarded, action);
}

void Metrics::callBacksUpdate(CallBackItem /*item*/, std::string /*entryId*/, ActionType action) {
    // A callback is updated when its state changes.
    if (action == eItemAdded) {
        filed(ListName::eCallbacks, action);
    }
}

void Metrics::filed(ListName list, ActionType action) {
    if (action == eItemAdded || action == eItemUpdated) {
        m_registered->filed(list).Increment();
    }
}

}  // namespace host
