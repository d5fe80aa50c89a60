#include "host/http/RequestMetrics.h"

#include <algorithm>
#include <array>
#include <utility>

namespace host {
namespace {

std::string knownMethod(std::string_view method) {
    constexpr std::array<std::string_view, 6> kMethods{"GET", "HEAD", "POST", "PUT", "DELETE", "OPTIONS"};
    const bool isKnown = std::find(kMethods.begin(), kMethods.end(), method) != kMethods.end();
    return std::string(isKnown ? method : "other");
}

/// "2xx".
std::string classOf(int status) {
    return std::to_string(std::clamp(status / 100, 1, 5)) + "xx";
}

const prometheus::Histogram::BucketBoundaries& buckets() {
    static const prometheus::Histogram::BucketBoundaries boundaries{0.001, 0.005, 0.01, 0.025, 0.1,
                                                                    0.25,  0.5,   1,    5};
    return boundaries;
}

}  // namespace

RequestMetrics::RequestMetrics(prometheus::Registry& registry)
    : m_requests(prometheus::BuildCounter()
                     .Name("calljournal_http_requests_total")
                     .Help("HTTP requests, by route, method and class of status")
                     .Register(registry)),
      m_times(prometheus::BuildHistogram()
                  .Name("calljournal_http_request_seconds")
                  .Help("How long a request was handled, without sending the response")
                  .Register(registry)) {}

void RequestMetrics::handled(const RequestReport& report) {
    const std::lock_guard lock(m_mutex);
    const auto [method, route] = Key(knownMethod(report.method), report.route);
    OfRoute& metrics = m_routes[{method, route}];
    if (metrics.times == nullptr) {
        metrics.times = &m_times.Add({{"route", route}, {"method", method}}, buckets());
    }
    const std::string status = classOf(report.status);
    prometheus::Counter*& count = metrics.counts[status];
    if (count == nullptr) {
        count = &m_requests.Add({{"route", route}, {"method", method}, {"status", status}});
    }
    count->Increment();
    metrics.times->Observe(report.time.count());
}

}  // namespace host
