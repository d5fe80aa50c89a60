#pragma once

#include <prometheus/counter.h>
#include <prometheus/gauge.h>
#include <prometheus/registry.h>

namespace host {

/// The metrics of the process, by the names that Prometheus' own libraries give them. Not synchronised.
class ProcessMetrics {
public:
    /// `registry` is borrowed.
    explicit ProcessMetrics(prometheus::Registry& registry);

    /// Measures them. A value that the system does not give stays as it is.
    void update();

private:
    prometheus::Counter& m_cpuSeconds;
    prometheus::Gauge& m_residentBytes;
    prometheus::Gauge& m_openFiles;
    prometheus::Gauge& m_mostFiles;
};

}  // namespace host
