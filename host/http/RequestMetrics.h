#pragma once

#include <prometheus/counter.h>
#include <prometheus/histogram.h>
#include <prometheus/registry.h>

#include <chrono>
#include <map>
#include <mutex>
#include <string>
#include <string_view>

namespace host {

/// A request that was handled.
struct RequestReport {
    std::string_view method;
    /// The pattern of its route, "page" for the page's files, "other" if it reached no route.
    std::string_view route;
    int status = 0;
    std::chrono::duration<double> time{};
};

/// The metrics of HTTP requests. The number of their labels is bounded for all requests that clients can
/// send: the names of routes, the known methods, and the classes of status. Thread-safe.
class RequestMetrics {
public:
    /// `registry` is borrowed.
    RequestMetrics(prometheus::Registry& registry);

    void handled(const RequestReport& report);

private:
    using Key = std::pair<std::string, std::string>;
    struct OfRoute {
        prometheus::Histogram* times = nullptr;
        std::map<std::string, prometheus::Counter*> counts{};
    };

    prometheus::Family<prometheus::Counter>& m_requests;
    prometheus::Family<prometheus::Histogram>& m_times;

    std::mutex m_mutex;
    // Guarded by m_mutex: by method and route, then by the class of the status.
    std::map<Key, OfRoute> m_routes;
};

}  // namespace host
