#include "host/http/Metrics.h"

#include <malloc.h>
#include <prometheus/counter.h>
#include <prometheus/gauge.h>
#include <prometheus/histogram.h>
#include <prometheus/registry.h>
#include <prometheus/text_serializer.h>

#include <algorithm>
#include <iterator>
#include <mutex>
#include <utility>

#include "host/http/ProcessMetrics.h"
#include "host/http/WebhookMetrics.h"

namespace host {
namespace {

/// The bytes that are allocated now; what the allocator keeps for later is not counted.
double allocatedMemory() {
    const struct mallinfo2 info = mallinfo2();
    return static_cast<double>(info.uordblks) + static_cast<double>(info.hblkhd);
}

}  // namespace

/// The metrics of lines: with the line as a label, or without.
class LineFamilies {
public:
    prometheus::Counter& filed(const std::string& line, ListName list) {
        return m_filed.Add(labels(line, {{"list", std::string(wordOf(list))}}));
    }
    void set(const std::string& line, const Metrics::LineGauges& gauges) {
        for (const auto& [list, count] : gauges.entries) {
            m_entries.Add(labels(line, {{"list", std::string(wordOf(list))}}))
                .Set(static_cast<double>(count));
        }
        m_unviewed.Add(labels(line, {})).Set(static_cast<double>(gauges.unviewed));
        m_monitored.Add(labels(line, {})).Set(gauges.isMonitored ? 1 : 0);
        m_up.Add(labels(line, {})).Set(static_cast<double>(gauges.liveCallCount));
    }
    /// Removes what there is of a line.
    void remove(const std::string& line) {
        forEachList([&]<typename Item>() {
            constexpr ListName kList = ListTraits<Item>::kList;
            m_filed.Remove(&filed(line, kList));
            m_entries.Remove(&m_entries.Add(labels(line, {{"list", std::string(wordOf(kList))}})));
        });
        for (prometheus::Family<prometheus::Gauge>* each : {&m_unviewed, &m_monitored, &m_up}) {
            each->Remove(&each->Add(labels(line, {})));
        }
    }
    [[nodiscard]] std::vector<prometheus::MetricFamily> collect() const { return m_registry.Collect(); }

private:
    static prometheus::Labels labels(const std::string& line, prometheus::Labels others) {
        if (!line.empty()) {
            others.emplace("line", line);
        }
        return others;
    }
    prometheus::Family<prometheus::Gauge>& gauges(const char* name, const char* help) {
        return prometheus::BuildGauge().Name(name).Help(help).Register(m_registry);
    }

    prometheus::Registry m_registry;
    prometheus::Family<prometheus::Counter>& m_filed =
        prometheus::BuildCounter()
            .Name("calljournal_calls_filed_total")
            .Help("Calls that were filed, by list; callbacks as they were requested")
            .Register(m_registry);
    prometheus::Family<prometheus::Gauge>& m_entries =
        gauges("calljournal_list_entries", "Entries in each list");
    prometheus::Family<prometheus::Gauge>& m_unviewed =
        gauges("calljournal_unviewed_missed_calls", "Missed entries that are not viewed");
    prometheus::Family<prometheus::Gauge>& m_monitored =
        gauges("calljournal_line_monitored", "1 while the switch reports the line's calls");
    prometheus::Family<prometheus::Gauge>& m_up = gauges("calljournal_calls_up", "Live calls just now");
};

class Metrics::Registered {
public:
    explicit Registered(const std::string& version) : requests(m_registry), m_webhooks(m_registry) {
        gauges("calljournal_build_info", "1; the version of the program is a label")
            .Add({{"version", version}})
            .Set(1);
        addLine("");
    }

    /// Each counter of a line exists from the start.
    void addLine(const std::string& line) {
        forEachList([&]<typename Item>() {
            static_cast<void>((line.empty() ? m_ofAll : m_ofLines).filed(line, ListTraits<Item>::kList));
        });
    }
    void removeLine(const std::string& line) { m_ofLines.remove(line); }
    void filed(const std::string& line, ListName list, bool isByLine) {
        if (isByLine) {
            m_ofLines.filed(line, list).Increment();
        }
        m_ofAll.filed("", list).Increment();
    }
    prometheus::Counter& events(std::string_view kind) { return m_events.Add({{"kind", std::string(kind)}}); }
    prometheus::Gauge& observers(const std::string& face) { return m_observers.Add({{"face", face}}); }
    prometheus::Gauge& memory(const char* use) { return m_memory.Add({{"use", use}}); }

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

    std::string text(const std::map<std::string, LineGauges>& ofLines) {
        const bool isByLine = !ofLines.contains("");
        LineFamilies& families = isByLine ? m_ofLines : m_ofAll;
        {
            const std::lock_guard lock(m_mutex);
            m_process.update();
            for (const auto& [line, values] : ofLines) {
                families.set(line, values);
            }
        }
        std::vector<prometheus::MetricFamily> all = m_registry.Collect();
        std::vector<prometheus::MetricFamily> some = families.collect();
        all.insert(all.end(), std::make_move_iterator(some.begin()), std::make_move_iterator(some.end()));
        return prometheus::TextSerializer().Serialize(all);
    }

private:
    static void raise(prometheus::Counter& counter, std::uint64_t total) {
        counter.Increment(std::max(0.0, static_cast<double>(total) - counter.Value()));
    }
    prometheus::Histogram& times(const char* name, const char* help) {
        return prometheus::BuildHistogram()
            .Name(name)
            .Help(help)
            .Register(m_registry)
            .Add({}, prometheus::Histogram::BucketBoundaries{0.0005, 0.001, 0.0025, 0.005, 0.01, 0.025, 0.05,
                                                             0.1, 0.25, 0.5, 1, 2.5});
    }
    prometheus::Family<prometheus::Gauge>& gauges(const char* name, const char* help) {
        return prometheus::BuildGauge().Name(name).Help(help).Register(m_registry);
    }
    prometheus::Family<prometheus::Counter>& counters(const char* name, const char* help) {
        return prometheus::BuildCounter().Name(name).Help(help).Register(m_registry);
    }

    prometheus::Registry m_registry;
    LineFamilies m_ofLines;
    LineFamilies m_ofAll;
    prometheus::Family<prometheus::Counter>& m_events =
        counters("calljournal_switch_events_total", "Events of the switch, by kind");
    prometheus::Family<prometheus::Gauge>& m_observers =
        gauges("calljournal_observers",
               "Open event streams (http) and connected clients of the Unix socket (remote)");
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
    prometheus::Gauge& connected =
        gauges("calljournal_switch_connected", "1 while all links to switches are connected").Add({});
    prometheus::Gauge& lines = gauges("calljournal_lines", "Lines that are served").Add({});
    prometheus::Gauge& monitored =
        gauges("calljournal_lines_monitored", "Lines whose calls the switch reports").Add({});
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

Metrics::Metrics(const std::string& version, std::size_t mostLines)
    : m_mostLines(mostLines), m_registered(std::make_unique<Registered>(version)) {}

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
    m_registered->connected.Set(gauges.connectedSwitches == gauges.switches ? 1 : 0);
    m_registered->lines.Set(static_cast<double>(gauges.lines));
    m_registered->monitored.Set(static_cast<double>(gauges.monitoredLines));
    m_registered->raiseTotals(gauges);
    m_registered->keptChanges.Set(static_cast<double>(gauges.keptChanges));
    const auto ofDatabase = static_cast<double>(gauges.databaseMemory);
    m_registered->memory("database").Set(ofDatabase);
    m_registered->memory("other").Set(std::max(0.0, allocatedMemory() - ofDatabase));
    for (const auto& [face, count] : gauges.observers) {
        m_registered->observers(face).Set(static_cast<double>(count));
    }
    return m_registered->text(gauges.ofLines);
}

LineMetrics::LineMetrics(Metrics& metrics, std::string line) : m_metrics(metrics), m_line(std::move(line)) {
    if (m_metrics.isByLine(++m_metrics.m_lines)) {
        m_metrics.m_registered->addLine(m_line);
    }
}

LineMetrics::~LineMetrics() {
    --m_metrics.m_lines;
    m_metrics.m_registered->removeLine(m_line);
}

void LineMetrics::missedCallsUpdate(MissedCallItem item, std::string /*entryId*/, ActionType action) {
    // A call leaves its entry unviewed. A viewed entry was only marked as viewed.
    if (!item.getViewed()) {
        filed(ListName::eMissed, action);
    }
}

void LineMetrics::dialledCallsUpdate(DialledCallItem /*item*/, std::string /*entryId*/, ActionType action) {
    filed(ListName::eDialled, action);
}

void LineMetrics::receivedCallsUpdate(ReceivedCallItem /*item*/, std::string /*entryId*/, ActionType action) {
    filed(ListName::eReceived, action);
}

void LineMetrics::forwardedCallsUpdate(ForwardedCallItem /*item*/, std::string /*entryId*/,
                                       ActionType action) {
    filed(ListName::eForwarded, action);
}

void LineMetrics::callBacksUpdate(CallBackItem /*item*/, std::string /*entryId*/, ActionType action) {
    // A callback is updated when its state changes.
    if (action == eItemAdded) {
        filed(ListName::eCallbacks, action);
    }
}

void LineMetrics::filed(ListName list, ActionType action) {
    if (action == eItemAdded || action == eItemUpdated) {
        m_metrics.m_registered->filed(m_line, list, m_metrics.isByLine(m_metrics.m_lines));
    }
}

}  // namespace host
