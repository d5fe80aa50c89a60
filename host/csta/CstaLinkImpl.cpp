#include "host/csta/CstaLinkImpl.h"

#include <utility>

#include <asio/post.hpp>

#include "host/csta-wire/WireDocument.h"
#include "host/csta/SystemStatusValues.h"
#include "host/csta/requests/LinkLog.h"
#include "host/framework/EventLoop.h"
#include "platform/csta/CSTAResponses.h"

namespace host {

CstaLinkImpl::CstaLinkImpl(CstaLinkConfig config, const EventDelivery::Post& post,
                           const EventDelivery::PostHere& here)
    : m_config(std::move(config)),
      m_messages(m_config.edition),
      m_work(m_io.get_executor()),
      m_pending(m_io, m_config.requestTimeout),
      m_events(post, lastOf(m_threads, post, here)),
      m_connection(m_io, m_config.host, m_config.port,
                   ExponentialBackoff(m_config.reconnectFirst, m_config.reconnectMax),
                   {[this] { connected(); }, [this](const Frame& frame) { received(frame); },
                    [this](const std::string& reason) { lost(reason); }, [this] { m_events.end(); }},
                   {}),
      m_association(
          m_io, m_config.session == "application-session", m_messages,
          [this](const std::string& xml, PendingRequests::Handler handler) { send(xml, std::move(handler)); },
          {[this] { ready(); }, [this](const std::string& reason) { m_connection.abandon(reason); }}),
      m_callLog(m_io, *this, m_messages, m_config.requestTimeout),
      m_receivers(EventDelivery(batched())),
      m_monitors(m_config, m_io, *this, batched(), [this] { updateStatus(); }),
      m_callControl({.ownDevice = m_config.ownDevice,
                     .edition = m_config.edition,
                     .requestTimeout = m_config.requestTimeout},
                    m_io, *this, m_monitors.calls(),
                    {.callsChanged =
                         [this] {
                             if (m_callsListener) {
                                 m_callsListener();
                             }
                         },
                     .statusChanged = [this] { updateStatus(); },
                     .isUnnumbered = [this](const std::string& id) { return m_monitors.isUnnumbered(id); }}),
      m_discovery(m_config, m_io, *this, m_messages,
                  [this](const std::vector<LineDevice>& devices) { devicesFound(devices); }),
      m_threads(m_io, [this] { m_connection.abandon("a message could not be handled"); }) {}

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
    asio::post(m_io, [this] { m_connection.open(); });
}

void CstaLinkImpl::stop() {
    const std::lock_guard joining(m_joinLock);
    {
        const std::lock_guard lock(m_acceptingLock);
        if (!m_accepting) {
            return;
        }
        m_accepting = false;
    }
    asio::post(m_io, [this] {
        m_connection.close();
        m_association.connectionLost();
        m_pending.failAll();
        m_discovery.connectionLost();
        m_monitors.close();
        m_callControl.close();
        m_work.reset();
    });
    m_threads.join();
}

CstaLinkStatus CstaLinkImpl::status() const noexcept {
    return {m_connectedNow, m_monitoringNow, m_callControlNow};
}

bool CstaLinkImpl::post(std::function<void()> work) {
    if (m_threads.isReader()) {
        CSTA_LINK_LOG(2, "%s", "a request from the link's own thread is not carried out");
        return false;
    }
    const std::lock_guard lock(m_acceptingLock);
    if (m_accepting) {
        asio::post(m_io, std::move(work));
    }
    return m_accepting;
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
        const std::lock_guard joined(m_joinLock);  // the reader thread has ended
        removeService();
    }
}

void CstaLinkImpl::registerForStatus(std::shared_ptr<EventSink> sink, const CompleteRequest& complete) {
    m_receivers.add(std::move(sink));
    complete(m_registrationRefused
                 ? RequestOutcome::refused<CSTASystemStatusResponse>("operation", "serviceNotSupported")
                 : RequestOutcome::ok<CSTASystemStatusResponse>());
}

void CstaLinkImpl::send(const std::string& xml, PendingRequests::Handler handler) {
    if (!m_connection.isConnected()) {
        handler({});
        return;
    }
    const std::optional<int> id = m_pending.add(handler);
    if (!id) {
        CSTA_LINK_LOG(2, "%s", "too many requests wait for the switch");
        handler({});
        return;
    }
    m_connection.send(*id, xml);
}

// ---- what happens on the connection

void CstaLinkImpl::connected() {
    CSTA_LINK_LOG(4, "connected to the switch at %s:%u%s", m_config.host.c_str(), unsigned{m_config.port},
                  m_outageLogged ? " again" : "");
    m_outageLogged = false;
    m_replacementsLogged = false;
    m_notifyStatus = m_everConnected;
    m_everConnected = true;
    updateStatus();
    m_association.open();
}

/// Sends all requests at once: the link also works with a switch that responds to MonitorStart only.
void CstaLinkImpl::ready() {
    m_monitorsDoubtful = false;
    updateStatus();
    send(m_messages.requestSystemStatus(), [this](const SwitchResponse& response) {
        if (response.kind == SwitchResponse::Kind::eLost) {
            return;
        }
        const std::string word = response.kind == SwitchResponse::Kind::eResponse
                                     ? childText(response.document->root(), "systemStatus")
                                     : "";
        if (std::exchange(m_notifyStatus, false)) {
            deliverStatus(word.empty() ? "enabled" : word);
        } else if (isInService(word)) {
            m_receivers.remember(word);
        }
    });
    registerAtSwitch();
    m_discovery.start();
    m_monitors.startAll();
}

void CstaLinkImpl::lost(const std::string& reason) {
    m_events.end();
    if (!std::exchange(m_outageLogged, true)) {
        CSTA_LINK_LOG(3, "the switch at %s:%u is %s: %s; trying again", m_config.host.c_str(),
                      unsigned{m_config.port}, m_lastStatus.connected ? "lost" : "not there", reason.c_str());
    }
    m_association.connectionLost();
    m_pending.failAll();
    m_receivers.connectionLost();
    m_discovery.connectionLost();
    m_monitors.connectionLost();
    m_callControl.connectionLost();
    updateStatus();
}

void CstaLinkImpl::received(const Frame& frame) {
    std::string fault;
    std::optional<WireDocument> document = WireDocument::parse(frame.xml, fault);
    if (!document) {
        CSTA_LINK_LOG(3, "a message from the switch is dropped: %s", fault.c_str());
        return;
    }
    if (document->hasReplacements() && !std::exchange(m_replacementsLogged, true)) {
        CSTA_LINK_LOG(3, "%s", "messages of the switch have characters that XML forbids; read as spaces");
    }
    if (document->kind() == MessageKind::eEvent) {
        m_events.begin();
    } else {
        m_events.flush();  // the events before a response are posted before it
    }
    switch (document->kind()) {
        case MessageKind::eEvent:
            if (!m_callLog.isEcho(*document)) {
                m_callControl.onEvent(*document);
                m_monitors.onEvent(std::move(*document));
            }
            break;
        case MessageKind::eResponse:
        case MessageKind::eError:
            if (!m_pending.complete(frame.invokeId, *document)) {
                CSTA_LINK_LOG(4, "%s with id %d is late or belongs to no request",
                              std::string(document->name()).c_str(), frame.invokeId);
                m_callControl.onLateResponse(*document);
            }
            break;
        case MessageKind::eRequest:
            if (document->name() == "SnapshotDeviceData" || document->name() == "SnapshotCallData") {
                // The standard defines no response to them.
                m_monitors.onSnapshotSegment(std::move(*document));
            } else {
                respond(frame.invokeId, *document);
            }
            break;
        case MessageKind::eNotice: m_association.terminated(); break;
        case MessageKind::eForeign:
            CSTA_LINK_LOG(6, "%s is no CSTA message", std::string(document->name()).c_str());
            break;
    }
}

void CstaLinkImpl::respond(int invokeId, const WireDocument& document) {
    const std::string_view name = document.name();
    if (name == "SystemStatus") {
        m_connection.send(invokeId, m_messages.systemStatusResponse());
        systemStatus(childText(document.root(), "systemStatus"));
    } else if (name == "RequestSystemStatus") {
        m_connection.send(invokeId, m_messages.requestSystemStatusResponse());
    } else if (name == "MonitorStop") {
        m_connection.send(invokeId, m_messages.monitorStopResponse());
        m_monitors.stoppedBySwitch(childText(document.root(), "monitorCrossRefID"));
    } else if (name == "SwitchingFunctionDevices") {
        // The standard defines no response to it.
        m_discovery.addSegment(document);
    } else if (name == "SwitchingFunctionDevicesChanged") {
        m_connection.send(invokeId, m_messages.switchingFunctionDevicesChangedResponse());
        if (m_association.isReady()) {
            m_discovery.start();
        }
    } else if (name == "SystemRegisterAbort") {
        // The standard defines no response to this one either.
        CSTA_LINK_LOG(4, "%s", "the switch has ended the registration for its status; registering again");
        registerAtSwitch();
    } else {
        CSTA_LINK_LOG(4, "the switch requests %s, which is not supported", std::string(name).c_str());
        m_connection.send(invokeId, m_messages.serviceNotSupported());
    }
}

void CstaLinkImpl::systemStatus(std::string_view word) {
    if (!word.empty()) {
        m_notifyStatus = false;
    }
    deliverStatus(word);
    if (requiresMonitorRestart(word)) {
        m_monitorsDoubtful = true;
    } else if (isInService(word) && std::exchange(m_monitorsDoubtful, false) && m_association.isReady()) {
        CSTA_LINK_LOG(4, "%s", "the switch is back in service; restarting all monitors");
        m_discovery.start();
        m_monitors.startAll();
        m_callsDoubtful = false;
    } else if (isInService(word) && std::exchange(m_callsDoubtful, false) && m_association.isReady()) {
        m_monitors.askForCalls();
    }
}

void CstaLinkImpl::deliverStatus(std::string_view word) {
    m_receivers.deliver(word);
    if (dropsCalls(word)) {
        m_monitors.callsForgotten();
        m_callsDoubtful = true;
    }
}

void CstaLinkImpl::registerAtSwitch(bool withDevices) {
    send(m_messages.systemRegister(withDevices), [this, withDevices](const SwitchResponse& response) {
        m_registrationRefused = response.kind == SwitchResponse::Kind::eRefused;
        if (!m_registrationRefused) {
            return;
        }
        CSTA_LINK_LOG(4, "the switch does not register us for its status%s: %s",
                      withDevices ? " and the phone's devices" : "", response.value.c_str());
        if (withDevices) {
            registerAtSwitch(false);
        }
    });
}

/// A service starts its monitors when it receives the devices. If one of these requests failed (connection
/// lost, switch not ready), the service retries it only if it receives the devices again.
void CstaLinkImpl::devicesFound(const std::vector<LineDevice>& devices) {
    m_receivers.deliverDevices(devices, m_monitors.takeFailedStart());
}

void CstaLinkImpl::updateStatus() {
    const CstaLinkStatus status{.connected = m_connection.isConnected(),
                                .monitoring = m_connection.isConnected() && m_monitors.isMonitoring(),
                                .callControl = m_connection.isConnected() && m_callControl.isAvailable()};
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
