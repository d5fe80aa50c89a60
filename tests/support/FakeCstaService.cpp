#include "tests/support/FakeCstaService.h"

#include "platform/csta/CSTARequests.h"
#include "platform/csta/CSTAResponses.h"

namespace journaltest {

void FakeCstaService::request(CSTARequest& request) {
    std::unique_lock lock(m_mutex);
    const Kind kind = note(request);
    if (const Response response = m_responses[kind]) {
        lock.unlock();
        response(request);
    } else {
        request.setOutcome(0, grant(kind));
    }
}

FakeCstaService::Kind FakeCstaService::note(const CSTARequest& request) {
    m_lastReceiver = request.getCSTAEventIfc();
    if (const auto* escape = dynamic_cast<const CSTAEscapeRequest*>(&request)) {
        if (escape->getCallLogEntry()) {
            m_callLogEntries.push_back(*escape->getCallLogEntry());
        }
        return Kind::eEscape;
    }
    m_asked += m_asked.empty() ? "" : "; ";
    if (const auto* start = dynamic_cast<const CSTAMonitorStartRequest*>(&request)) {
        m_asked += "start " + start->getDeviceObject();
        m_lastFilter = start->getRequestedMonitorFilter();
        return Kind::eMonitorStart;
    }
    if (const auto* stop = dynamic_cast<const CSTAMonitorStopRequest*>(&request)) {
        m_asked += "stop " + stop->getMonitorCrossRefID();
        return Kind::eMonitorStop;
    }
    if (const auto* change = dynamic_cast<const CSTAChangeMonitorFilterRequest*>(&request)) {
        m_asked += "change " + change->getDeviceObject();
        m_lastFilter = change->getRequestedFilterList();
        return Kind::eChangeMonitorFilter;
    }
    m_asked += "status";
    return Kind::eSystemStatus;
}

std::unique_ptr<CSTAResponse> FakeCstaService::grant(Kind kind) {
    switch (kind) {
        case Kind::eMonitorStart:
            return std::make_unique<CSTAMonitorStartResponse>(std::to_string(++m_monitors));
        case Kind::eMonitorStop: return std::make_unique<CSTAMonitorStopResponse>();
        case Kind::eChangeMonitorFilter: return std::make_unique<CSTAChangeMonitorFilterResponse>();
        case Kind::eEscape: return std::make_unique<CSTAEscapeResponse>();
        case Kind::eSystemStatus: break;
    }
    return std::make_unique<CSTASystemStatusResponse>();
}

}  // namespace journaltest
