#include "host/csta/CstaLinkImpl.h"

#include <algorithm>
#include <utility>

#include "host/csta-wire/WireDocument.h"
#include "host/csta/association/SystemStatusValues.h"
#include "host/csta/requests/LinkLog.h"
#include "platform/csta/CSTAResponses.h"

namespace host {
namespace {

SwitchLinkConfig switchConfigOf(const CstaLinkConfig& config) {
    return {.host = config.host,
            .port = config.port,
            .tls = config.tls,
            .edition = config.edition,
            .session = config.session,
            .requestTimeout = config.requestTimeout,
            .reconnectFirst = config.reconnectFirst,
            .reconnectMax = config.reconnectMax};
}

}  // namespace

CstaLinkImpl::CstaLinkImpl(SwitchLink* shared, CstaLinkConfig config, const EventDelivery::Post& post,
                           const EventDelivery::PostHere& here)
    : m_config(std::move(config)),
      m_messages(m_config.edition),
      m_own(shared == nullptr ? std::make_unique<SwitchLink>(switchConfigOf(m_config)) : nullptr),
      m_switch(shared == nullptr ? *m_own : *shared),
      m_events(post, lastOf(m_switch.threads(), post, here)),
      m_callLog(m_switch.io(), *this, m_messages, m_config.requestTimeout),
      m_receivers(EventDelivery(batched())),
      m_monitors(m_config, m_switch.io(), *this, batched(), [this] { updateStatus(); }),
      m_callControl({.ownDevice = m_config.ownDevice,
                     .edition = m_config.edition,
                     .requestTimeout = m_config.requestTimeout},
                    m_switch.io(), *this, m_monitors.calls(),
                    {.callsChanged =
                         [this] {
                             if (m_callsListener) {
                                 m_callsListener();
                             }
                         },
                     .statusChanged = [this] { updateStatus(); },
                     .isUnnumbered = [this](const std::string& id) { return m_monitors.isUnnumbered(id); }}),
      m_discovery(m_config, m_switch.io(), *this, m_messages,
                  [this](const std::vector<LineDevice>& devices) { devicesFound(devices); }) {}

CstaLinkImpl::~CstaLinkImpl() {
    stop();
}

EventDelivery::Post CstaLinkImpl::lastOf(LinkThreads& threads, EventDelivery::Post post,
                                         EventDelivery::PostHere here) {
    if (!here.run) {
        return post;
    }
    return [&threads, post = std::move(post), here = std::move(here)](std::function<void()> delivery) {
        if (threads.leaveFor(here.run)) {
            here.queue(std::move(delivery));
        } else {
            post(std::move(delivery));
        }
    };
}

EventDelivery::Post CstaLinkImpl::batched() {
    return [this](std::function<void()> delivery) { m_events.add(std::move(delivery)); };
}

void CstaLinkImpl::setStatusListener(CstaLinkStatusListener listener) {
    m_listener = std::move(listener);
}

void CstaLinkImpl::start() {
    static_cast<void>(m_switch.post([this] {
        m_isLinked = true;
        m_switch.add(*this);
    }));
    if (m_own) {
        m_own->start();
    }
}

void CstaLinkImpl::stop() {
    const std::lock_guard leaving(m_leaveLock);
    {
        const std::lock_guard lock(m_acceptingLock);
        if (!std::exchange(m_accepting, false)) {
            return;
        }
    }
    std::promise<void> left;
    // A timer that had run out may have its handler after that of `leave`; it comes before the second one.
    const bool posted = m_switch.post([this] { leave(); }) && m_switch.post([&left] { left.set_value(); });
    if (posted) {
        left.get_future().wait();
    } else {
        leave();  // the switch's link has ended
    }
    if (m_own) {
        m_own->stop();
    }
}

void CstaLinkImpl::leave() {
    if (!m_own) {
        m_monitors.stopAllAtSwitch();
    }
    m_isLinked = false;
    m_switch.remove(*this);
    m_discovery.connectionLost();
    m_monitors.close();
    m_callControl.close();
    m_events.end();
}

CstaLinkStatus CstaLinkImpl::status() const noexcept {
    return {m_connectedNow, m_monitoringNow, m_callControlNow};
}

bool CstaLinkImpl::post(std::function<void()> work) {
    if (m_switch.isReader()) {
        CSTA_LINK_LOG(2, "%s", "a request from the link's own thread is not carried out");
        return false;
    }
    const std::lock_guard lock(m_acceptingLock);
    return m_accepting && m_switch.post(std::move(work));
}

void CstaLinkImpl::release(const Service& source) {
    const auto removeService = [this, &source] {
        m_monitors.release(source);
        m_receivers.release(source);
    };
    const RequestOutcome outcome = perform([&removeService](const CompleteRequest& complete) {
        removeService();
        complete(RequestOutcome::ok<CSTAMonitorStopResponse>());
    });
    if (outcome.code == RequestOutcome::kNotCarriedOut) {
        const std::lock_guard left(m_leaveLock);  // the line has left the link
        removeService();
    }
}

void CstaLinkImpl::registerForStatus(std::shared_ptr<EventSink> sink, const CompleteRequest& complete) {
    m_receivers.add(std::move(sink));
    complete(m_switch.isRegistrationRefused()
                 ? RequestOutcome::refused<CSTASystemStatusResponse>("operation", "serviceNotSupported")
                 : RequestOutcome::ok<CSTASystemStatusResponse>());
}

// ---- requests of the components

void CstaLinkImpl::send(const std::string& xml, PendingRequests::Handler handler) {
    if (!m_isLinked) {
        handler({});
        return;
    }
    m_switch.send(this, xml, std::move(handler));
}

std::vector<WireDocument> CstaLinkImpl::claim(ReferenceKind kind, const std::string& id) {
    std::vector<WireDocument> early =
        m_switch.references().claim(*this, kind, id, CrossReferences::Clock::now());
    if (kind == ReferenceKind::eMonitor) {
        std::erase_if(early, [this](const WireDocument& event) { return !isForMonitors(event); });
    }
    return early;
}

void CstaLinkImpl::drop(ReferenceKind kind, const std::string& id) {
    m_switch.references().drop(*this, kind, id);
}

// ---- what happens on the link

void CstaLinkImpl::ready() {
    updateStatus();
    m_discovery.start();
    m_monitors.startAll();
}

void CstaLinkImpl::connectionLost() {
    m_receivers.connectionLost();
    m_discovery.connectionLost();
    m_monitors.connectionLost();
    m_callControl.connectionLost();
    updateStatus();
}

bool CstaLinkImpl::isForMonitors(const WireDocument& event) {
    if (m_callLog.isEcho(event)) {
        return false;
    }
    m_callControl.onEvent(event);
    return true;
}

void CstaLinkImpl::onEvent(const WireDocument& event) {
    m_events.begin();
    if (isForMonitors(event)) {
        m_monitors.onEvent(event);
    }
}

void CstaLinkImpl::onSegment(const WireDocument& segment) {
    if (segment.name() == "SwitchingFunctionDevices") {
        m_discovery.addSegment(segment);
    } else {
        m_monitors.onSnapshotSegment(segment);
    }
}

void CstaLinkImpl::onSystemStatus(std::string_view word) {
    m_receivers.deliver(word);
    if (dropsCalls(word)) {
        m_monitors.callsForgotten();
    }
}

void CstaLinkImpl::restartMonitors() {
    m_discovery.start();
    m_monitors.startAll();
}

/// A service starts its monitors when it receives the devices. If one of these requests failed (connection
/// lost, switch not ready), the service retries it only if it receives the devices again.
void CstaLinkImpl::devicesFound(const std::vector<LineDevice>& devices) {
    m_receivers.deliverDevices(devices, m_monitors.takeFailedStart());
}

void CstaLinkImpl::updateStatus() {
    const bool isConnected = m_isLinked && m_switch.isConnected();
    const CstaLinkStatus status{.connected = isConnected,
                                .monitoring = isConnected && m_monitors.isMonitoring(),
                                .callControl = isConnected && m_callControl.isAvailable()};
    if (status == m_lastStatus) {
        return;
    }
    m_lastStatus = status;
    m_connectedNow = status.connected;
    m_monitoringNow = status.monitoring;
    m_callControlNow = status.callControl;
    if (m_listener) {
        m_listener(status);
    }
}

}  // namespace host
