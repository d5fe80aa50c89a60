#include "host/csta/CstaLink.h"

#include <utility>

#include "host/csta/LinkEngine.h"
#include "host/csta/LinkLog.h"
#include "platform/csta/CSTAEventIfc.h"
#include "platform/csta/CSTARequests.h"
#include "platform/framework/Service.h"

namespace host {

namespace {

std::shared_ptr<EventSink> sinkOf(const CSTARequest& request) {
    CSTAEventIfc* receiver = request.getCSTAEventIfc();
    if (receiver == nullptr) {
        // A service that only names itself takes its events with the same object.
        receiver = dynamic_cast<CSTAEventIfc*>(request.getSourceService());
    }
    return std::make_shared<EventSink>(receiver, request.getSourceService());
}

/// Null for a request that is none about the switch's call log.
const CallLogEntryRequest* callLogEntryOf(const CSTARequest& request) {
    constexpr int kCallLogEntryType = 0;
    const auto* const escape = dynamic_cast<const CSTAEscapeRequest*>(&request);
    return escape != nullptr && escape->getEventType() == kCallLogEntryType ? escape->getCallLogEntry()
                                                                            : nullptr;
}

}  // namespace

CstaLink::CstaLink(CstaLinkConfig config, const Post& post)
    : m_impl(std::make_unique<Engine>(std::move(config), post)) {}

CstaLink::~CstaLink() = default;

void CstaLink::setStatusListener(StatusListener listener) {
    m_impl->setStatusListener(std::move(listener));
}

void CstaLink::start() {
    m_impl->start();
}

void CstaLink::stop() {
    m_impl->stop();
}

CstaLink::Status CstaLink::status() const noexcept {
    return m_impl->status();
}

void CstaLink::releaseService(const Service& source) {
    m_impl->release(source);
}

void CstaLink::request(CSTARequest& request) {
    RequestOutcome outcome;
    Engine& engine = *m_impl;
    if (auto* start = dynamic_cast<CSTAMonitorStartRequest*>(&request)) {
        outcome = engine.perform([&engine, device = start->getDeviceObject(),
                                  filter = start->getRequestedMonitorFilter(),
                                  sink = sinkOf(request)](const CompleteRequest& complete) {
            engine.monitors().start(device, filter, sink, complete);
        });
    } else if (auto* stop = dynamic_cast<CSTAMonitorStopRequest*>(&request)) {
        outcome =
            engine.perform([&engine, id = stop->getMonitorCrossRefID()](const CompleteRequest& complete) {
                engine.monitors().stop(id, complete);
            });
    } else if (auto* change = dynamic_cast<CSTAChangeMonitorFilterRequest*>(&request)) {
        outcome =
            engine.perform([&engine, device = change->getDeviceObject(),
                            filter = change->getRequestedFilterList()](const CompleteRequest& complete) {
                engine.monitors().changeFilter(device, filter, complete);
            });
    } else if (dynamic_cast<CSTASystemStatusRequest*>(&request) != nullptr) {
        outcome = engine.perform([&engine, sink = sinkOf(request)](const CompleteRequest& complete) {
            engine.registerForStatus(sink, complete);
        });
    } else if (const CallLogEntryRequest* entry = callLogEntryOf(request)) {
        outcome = engine.perform(
            [&engine, asked = *entry](const CompleteRequest& complete) { engine.escape(asked, complete); });
    } else {
        CSTA_LINK_LOG(3, "%s", "a request of a kind that the link does not carry");
    }
    request.setOutcome(outcome.code, std::move(outcome.response));
}

}  // namespace host
