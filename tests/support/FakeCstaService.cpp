#include "tests/support/FakeCstaService.h"

#include <memory>
#include <utility>

#include "platform/csta/CSTAEventIfc.h"
#include "platform/csta/CSTARequests.h"
#include "platform/csta/CSTAResponses.h"

namespace journaltest {
namespace {

FakeCstaService::Noted note(const CSTARequest& request) {
    using Kind = FakeCstaService::Kind;
    FakeCstaService::Noted noted;
    noted.source = request.getSourceService();
    noted.receiver = request.getCSTAEventIfc();
    if (dynamic_cast<const CSTASystemStatusRequest*>(&request)) {
        noted.kind = Kind::eSystemStatus;
    } else if (const auto* start = dynamic_cast<const CSTAMonitorStartRequest*>(&request)) {
        noted.kind = Kind::eMonitorStart;
        noted.device = start->getDeviceObject();
        noted.filter = start->getRequestedMonitorFilter();
    } else if (const auto* stop = dynamic_cast<const CSTAMonitorStopRequest*>(&request)) {
        noted.kind = Kind::eMonitorStop;
        noted.crossRefId = stop->getMonitorCrossRefID();
    } else if (const auto* change = dynamic_cast<const CSTAChangeMonitorFilterRequest*>(&request)) {
        noted.kind = Kind::eChangeMonitorFilter;
        noted.device = change->getDeviceObject();
        noted.filter = change->getRequestedFilterList();
    } else if (const auto* escape = dynamic_cast<const CSTAEscapeRequest*>(&request)) {
        noted.kind = Kind::eEscape;
        noted.eventType = escape->getEventType();
        if (escape->getCallLogEntry()) {
            noted.callLogEntry = *escape->getCallLogEntry();
        }
    }
    return noted;
}

std::unique_ptr<CSTAResponse> responseFor(FakeCstaService::Kind kind) {
    using Kind = FakeCstaService::Kind;
    switch (kind) {
        case Kind::eMonitorStart: return std::make_unique<CSTAMonitorStartResponse>();
        case Kind::eMonitorStop: return std::make_unique<CSTAMonitorStopResponse>();
        case Kind::eChangeMonitorFilter: return std::make_unique<CSTAChangeMonitorFilterResponse>();
        case Kind::eEscape: return std::make_unique<CSTAEscapeResponse>();
        case Kind::eSystemStatus: return std::make_unique<CSTASystemStatusResponse>();
        case Kind::eOther: break;
    }
    return nullptr;
}

}  // namespace

void FakeCstaService::answer(Kind kind, Answer answer) {
    const std::lock_guard lock(m_mutex);
    m_answers[kind] = std::move(answer);
}

void FakeCstaService::fail(Kind kind, int code) {
    answer(kind, [code](CSTARequest& request) { request.setOutcome(code, nullptr); });
}

void FakeCstaService::refuse(Kind kind, const std::string& category, const std::string& value) {
    answer(kind, [kind, category, value](CSTARequest& request) {
        auto response = responseFor(kind);
        if (response) {
            response->setError(category, value);
        }
        request.setOutcome(0, std::move(response));
    });
}

void FakeCstaService::grantAll() {
    const std::lock_guard lock(m_mutex);
    m_answers.clear();
}

std::vector<FakeCstaService::Noted> FakeCstaService::requests() const {
    const std::lock_guard lock(m_mutex);
    return m_requests;
}

std::vector<FakeCstaService::Noted> FakeCstaService::requests(Kind kind) const {
    std::vector<Noted> found;
    for (const Noted& noted : requests()) {
        if (noted.kind == kind) {
            found.push_back(noted);
        }
    }
    return found;
}

std::vector<CallLogEntryRequest> FakeCstaService::callLogEntries() const {
    std::vector<CallLogEntryRequest> entries;
    for (const Noted& noted : requests(Kind::eEscape)) {
        if (noted.callLogEntry) {
            entries.push_back(*noted.callLogEntry);
        }
    }
    return entries;
}

void FakeCstaService::forgetRequests() {
    const std::lock_guard lock(m_mutex);
    m_requests.clear();
}

void FakeCstaService::deliver(CSTAEvent& event) {
    CSTAEventIfc* receiver = nullptr;
    {
        const std::lock_guard lock(m_mutex);
        receiver = m_receiver;
    }
    if (receiver) {
        receiver->deliverEvent(&event);
    }
}

void FakeCstaService::request(CSTARequest& request) {
    const Noted noted = note(request);
    Answer told;
    {
        const std::lock_guard lock(m_mutex);
        m_requests.push_back(noted);
        if (noted.receiver) {
            m_receiver = noted.receiver;
        }
        const auto found = m_answers.find(noted.kind);
        if (found != m_answers.end()) {
            told = found->second;
        }
    }
    if (told) {
        told(request);
    } else {
        grant(noted.kind, request);
    }
}

void FakeCstaService::grant(Kind kind, CSTARequest& request) {
    if (kind == Kind::eMonitorStart) {
        const std::lock_guard lock(m_mutex);
        request.setOutcome(0, std::make_unique<CSTAMonitorStartResponse>(std::to_string(++m_monitors)));
    } else {
        request.setOutcome(0, responseFor(kind));
    }
}

}  // namespace journaltest
