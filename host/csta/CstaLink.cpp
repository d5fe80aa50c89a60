#include "host/csta/CstaLink.h"

#include <utility>

#include "host/csta/CstaLinkImpl.h"
#include "host/csta/requests/LinkLog.h"
#include "platform/csta/CSTAEventIfc.h"
#include "platform/csta/CSTARequests.h"
#include "platform/framework/Service.h"

namespace host {

namespace {

std::shared_ptr<EventSink> sinkOf(const CSTARequest& request) {
    CSTAEventIfc* receiver = request.getCSTAEventIfc();
    if (receiver == nullptr) {
        // A service that sets only itself as the source receives the events itself.
        receiver = dynamic_cast<CSTAEventIfc*>(request.getSourceService());
    }
    return std::make_shared<EventSink>(receiver, request.getSourceService());
}

/// `nullptr` unless the request is about the switch's call log.
const CallLogEntryRequest* callLogEntryOf(const CSTARequest& request) {
    constexpr int kCallLogEntryType = 0;
    const auto* const escape = dynamic_cast<const CSTAEscapeRequest*>(&request);
    return escape != nullptr && escape->getEventType() == kCallLogEntryType ? escape->getCallLogEntry()
                                                                            : nullptr;
}

CallControlOutcome controlled(
    CstaLinkImpl& link, const std::function<void(CallControl&, const CallControl::Complete&)>& request) {
    return link
        .resultOf<CallControlOutcome>([&](const auto& complete) { request(link.callControl(), complete); })
        .value_or(CallControlOutcome());
}

}  // namespace

CstaLink::CstaLink(CstaLinkConfig config, const Post& post, const PostHere& here)
    : m_impl(std::make_unique<CstaLinkImpl>(nullptr, std::move(config), post, here)) {}

CstaLink::CstaLink(SwitchLink* shared, CstaLinkConfig config, const Post& post, const PostHere& here)
    : m_impl(std::make_unique<CstaLinkImpl>(shared, std::move(config), post, here)) {}

CstaLink::~CstaLink() = default;

void CstaLink::setStatusListener(StatusListener listener) {
    m_impl->setStatusListener(std::move(listener));
}

void CstaLink::setCallsListener(std::function<void()> listener) {
    m_impl->setCallsListener(std::move(listener));
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

std::size_t CstaLink::callCount() const noexcept {
    return m_impl->callCount();
}

void CstaLink::releaseService(const Service& source) {
    m_impl->release(source);
}

void CstaLink::request(CSTARequest& request) {
    RequestOutcome outcome;
    CstaLinkImpl& link = *m_impl;
    if (auto* start = dynamic_cast<CSTAMonitorStartRequest*>(&request)) {
        outcome = link.perform([&link, device = start->getDeviceObject(),
                                filter = start->getRequestedMonitorFilter(),
                                sink = sinkOf(request)](const CompleteRequest& complete) {
            link.monitors().start(device, filter, sink, complete);
        });
    } else if (auto* stop = dynamic_cast<CSTAMonitorStopRequest*>(&request)) {
        outcome = link.perform([&link, id = stop->getMonitorCrossRefID()](const CompleteRequest& complete) {
            link.monitors().stop(id, complete);
        });
    } else if (auto* change = dynamic_cast<CSTAChangeMonitorFilterRequest*>(&request)) {
        outcome = link.perform([&link, device = change->getDeviceObject(),
                                filter = change->getRequestedFilterList()](const CompleteRequest& complete) {
            link.monitors().changeFilter(device, filter, complete);
        });
    } else if (dynamic_cast<CSTASystemStatusRequest*>(&request) != nullptr) {
        outcome = link.perform([&link, sink = sinkOf(request)](const CompleteRequest& complete) {
            link.registerForStatus(sink, complete);
        });
    } else if (const CallLogEntryRequest* entry = callLogEntryOf(request)) {
        outcome = link.perform([&link, logRequest = *entry](const CompleteRequest& complete) {
            link.callLog().request(logRequest, complete);
        });
    } else {
        CSTA_LINK_LOG(3, "%s", "the link does not support this kind of request");
    }
    request.setOutcome(outcome.code, std::move(outcome.response));
}

CallControlOutcome CstaLink::makeCall(const std::string& number) {
    return controlled(*m_impl,
                      [&](CallControl& calls, const auto& complete) { calls.makeCall(number, complete); });
}

CallControlOutcome CstaLink::answerCall(const std::string& id) {
    return controlled(*m_impl,
                      [&](CallControl& calls, const auto& complete) { calls.answerCall(id, complete); });
}

CallControlOutcome CstaLink::clearCall(const std::string& id) {
    return controlled(*m_impl,
                      [&](CallControl& calls, const auto& complete) { calls.clearCall(id, complete); });
}

std::vector<LiveCallView> CstaLink::liveCalls() {
    using Views = std::vector<LiveCallView>;
    return m_impl->resultOf<Views>([this](const auto& complete) { complete(m_impl->callControl().views()); })
        .value_or(Views());
}

}  // namespace host
