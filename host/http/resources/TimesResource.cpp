#include "host/http/resources/TimesResource.h"

#include <chrono>
#include <nlohmann/json.hpp>
#include <vector>

#include "host/data/CallTimes.h"
#include "host/http/messages/HttpError.h"
#include "host/http/messages/Router.h"

namespace host {
namespace {

using Json = nlohmann::ordered_json;
using std::chrono::days;
using std::chrono::hours;
using std::chrono::minutes;
using std::chrono::seconds;
using std::chrono::sys_days;
using std::chrono::sys_seconds;

}  // namespace

void TimesResource::addRoutes(Router& router) {
    router.add({"GET",
                "/api/v1/times",
                Scope::eRead,
                [this](const HttpRequest& each) { return times(each); },
                {"from"}});
}

sys_seconds TimesResource::startOf(const HttpRequest& request) {
    const std::string& text = request.queryValue("from");
    if (text.empty()) {
        return sys_seconds(seconds(m_clock.getSeconds())) - days(28);
    }
    ClockServiceIfc::DateTime time;
    if (!m_clock.splitTimeDate(text, time)) {
        throw HttpError(400, "bad-time", "from must be a time in UTC, as 2026-11-21T15:15:00Z");
    }
    return sys_days(std::chrono::year(time.year) / time.month / time.day) + hours(time.hour) +
           minutes(time.minute) + seconds(time.second);
}

std::string TimesResource::textOf(sys_seconds time) {
    return m_clock.formatTimeDate(time.time_since_epoch().count());
}

HttpResponse TimesResource::times(const HttpRequest& request) {
    const sys_seconds from = startOf(request);
    std::vector<QuarterOfCalls> found;
    if (!m_sources.database.read("counting calls", [&](Database::Session& session) {
            found = CallTimes(session, m_sources.line).since(from);
        })) {
        throw HttpError(503, "database", "the database does not respond; see the log");
    }
    Json quarters = Json::array();
    for (const QuarterOfCalls& each : found) {
        quarters.push_back({{"time", textOf(each.begin)},
                            {"missed", each.of(ListName::eMissed)},
                            {"dialled", each.of(ListName::eDialled)},
                            {"received", each.of(ListName::eReceived)},
                            {"forwarded", each.of(ListName::eForwarded)}});
    }
    return jsonResponse({{"from", textOf(from)}, {"quarters", std::move(quarters)}});
}

}  // namespace host
