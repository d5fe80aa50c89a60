#include "host/csta/LinkEngine.h"

#include <future>
#include <memory>
#include <utility>

#include <asio/post.hpp>

#include "host/csta-wire/WireDocument.h"
#include "host/csta/LinkLog.h"
#include "host/csta/SystemStatusWords.h"
#include "platform/csta/CSTAResponses.h"

namespace host {

CstaLink::Engine::Engine(CstaLinkConfig config, const Post& post)
    : m_config(std::move(config)),
      m_messages(m_config.edition),
      m_work(m_io.get_executor()),
      m_pending(m_io, m_config.requestTimeout),
      m_connection(m_io, m_config.host, m_config.port,
                   ExponentialBackoff(m_config.reconnectFirst, m_config.reconnectMax),
                   {[this] { connected(); }, [this](const Frame& frame) { received(frame); },
                    [this](const std::string& why) { lost(why); }}),
      m_association(
          m_io, m_config.session == "application-session", m_messages,
          [this](const std::string& xml, PendingRequests::Handler handler) { send(xml, std::move(handler)); },
          {[this] { ready(); }, [this](const std::string& why) { m_connection.abandon(why); }}),
      m_receivers(EventDelivery(post)),
      m_monitors(m_config, m_io, *this, EventDelivery(post), [this] { updateStatus(); }),
      m_inquiry(m_config, m_io, *this, m_messages,
                [this](const std::vector<LineDevice>& devices) { devicesFound(devices); }),
      m_thread([this] { m_io.run(); }),
      m_readerId(m_thread.get_id()) {}

CstaLink::Engine::~Engine() {
    stop();
}

void CstaLink::Engine::setStatusListener(StatusListener listener) {
    m_listener = std::move(listener);
}

void CstaLink::Engine::start() {
    asio::post(m_io, [this] { m_connection.open(); });
}

void CstaLink::Engine::stop() {
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
        m_inquiry.connectionLost();
        m_monitors.connectionLost();
        m_work.reset();
    });
    m_thread.join();
}

CstaLink::Status CstaLink::Engine::status() const noexcept {
    return {m_connectedNow, m_monitoringNow};
}

RequestOutcome CstaLink::Engine::perform(const std::function<void(const CompleteRequest&)>& work) {
    if (std::this_thread::get_id() == m_readerId) {
        CSTA_LINK_LOG(2, "%s", "a request from the link's own thread is not carried out");
        return {};
    }
    auto promise = std::make_shared<std::promise<RequestOutcome>>();
    std::future<RequestOutcome> outcome = promise->get_future();
    {
        const std::lock_guard lock(m_acceptingLock);
        if (!m_accepting) {
            return {};
        }
        asio::post(m_io, [work, promise] {
            work([promise](RequestOutcome result) { promise->set_value(std::move(result)); });
        });
    }
    return outcome.get();
}

void CstaLink::Engine::release(const Service& source) {
    const auto forget = [this, &source] {
        m_monitors.release(source);
        m_receivers.release(source);
    };
    const RequestOutcome outcome = perform([&forget](const CompleteRequest& complete) {
        forget();
        complete(RequestOutcome::ok<CSTAMonitorStopResponse>());
    });
    if (outcome.code == RequestOutcome::kNotCarriedOut) {
        const std::lock_guard joined(m_joinLock);  // the reader thread is gone
        forget();
    }
}

void CstaLink::Engine::registerForStatus(std::shared_ptr<EventSink> sink, const CompleteRequest& complete) {
    m_receivers.add(std::move(sink));
    complete(m_registrationRefused
                 ? RequestOutcome::refused<CSTASystemStatusResponse>("operation", "serviceNotSupported")
                 : RequestOutcome::ok<CSTASystemStatusResponse>());
}

/// Nothing is kept for later: without a connection the request fails at once, as the library expects of a switch that is away.
void CstaLink::Engine::escape(const CallLogEntryRequest& request, const CompleteRequest& complete) {
    if (!m_association.isReady()) {
        complete({RequestOutcome::kConnectionLost, nullptr});
        return;
    }
    send(m_messages.escape(request), [complete](const Answer& answer) {
        if (answer.kind == Answer::Kind::eRefused) {
            CSTA_LINK_LOG(3, "the switch refuses a request about its call log: %s", answer.value.c_str());
        }
        complete(RequestOutcome::of<CSTAEscapeResponse>(answer));
    });
}

void CstaLink::Engine::send(const std::string& xml, PendingRequests::Handler handler) {
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

void CstaLink::Engine::connected() {
    CSTA_LINK_LOG(4, "connected to the switch at %s:%u%s", m_config.host.c_str(), unsigned{m_config.port},
                  m_outageLogged ? " again" : "");
    m_outageLogged = false;
    m_notifyStatus = m_everConnected;
    m_everConnected = true;
    updateStatus();
    m_association.open();
}

/// All at once: a switch that answers nothing but MonitorStart is served as well.
void CstaLink::Engine::ready() {
    m_monitorsDoubtful = false;
    send(m_messages.requestSystemStatus(), [this](const Answer& answer) {
        if (answer.kind == Answer::Kind::eLost) {
            return;
        }
        const std::string word =
            answer.kind == Answer::Kind::eAnswered ? childText(answer.document->root(), "systemStatus") : "";
        if (std::exchange(m_notifyStatus, false)) {
            m_receivers.deliver(word.empty() ? "enabled" : word);
        } else if (isServing(word)) {
            m_receivers.remember(word);
        }
    });
    registerAtSwitch();
    m_inquiry.ask();
    m_monitors.startAll();
}

void CstaLink::Engine::lost(const std::string& why) {
    if (!std::exchange(m_outageLogged, true)) {
        CSTA_LINK_LOG(3, "the switch at %s:%u is %s: %s; trying again", m_config.host.c_str(),
                      unsigned{m_config.port}, m_lastStatus.connected ? "lost" : "not there", why.c_str());
    }
    m_association.connectionLost();
    m_pending.failAll();
    m_receivers.connectionLost();
    m_inquiry.connectionLost();
    m_monitors.connectionLost();
    updateStatus();
}

void CstaLink::Engine::received(const Frame& frame) {
    std::string fault;
    std::optional<WireDocument> document = WireDocument::parse(frame.xml, fault);
    if (!document) {
        CSTA_LINK_LOG(3, "a message from the switch is dropped: %s", fault.c_str());
        return;
    }
    switch (document->kind()) {
        case MessageKind::eEvent: m_monitors.event(std::move(*document)); break;
        case MessageKind::eResponse:
        case MessageKind::eError:
            if (!m_pending.complete(frame.invokeId, *document)) {
                CSTA_LINK_LOG(4, "%s with id %d comes late or to no request",
                              std::string(document->name()).c_str(), frame.invokeId);
            }
            break;
        case MessageKind::eRequest: responseTo(frame.invokeId, *document); break;
        case MessageKind::eNotice: m_association.terminated(); break;
        case MessageKind::eForeign:
            CSTA_LINK_LOG(6, "%s is none of ours", std::string(document->name()).c_str());
            break;
    }
}

void CstaLink::Engine::responseTo(int invokeId, const WireDocument& document) {
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
        // The standard has no answer to it.
        m_inquiry.takeSegment(document);
    } else if (name == "SwitchingFunctionDevicesChanged") {
        m_connection.send(invokeId, m_messages.switchingFunctionDevicesChangedResponse());
        if (m_association.isReady()) {
            m_inquiry.ask();
        }
    } else if (name == "SystemRegisterAbort") {
        // Nor to this one.
        CSTA_LINK_LOG(4, "%s", "the switch has ended the registration for its status; registering again");
        registerAtSwitch();
    } else {
        CSTA_LINK_LOG(4, "the switch asks for %s, which is not supported", std::string(name).c_str());
        m_connection.send(invokeId, m_messages.serviceNotSupported());
    }
}

void CstaLink::Engine::systemStatus(std::string_view word) {
    if (!word.empty()) {
        m_notifyStatus = false;
    }
    m_receivers.deliver(word);
    if (losesMonitors(word)) {
        m_monitorsDoubtful = true;
    } else if (isServing(word) && std::exchange(m_monitorsDoubtful, false) && m_association.isReady()) {
        CSTA_LINK_LOG(4, "%s", "the switch serves again; starting all monitors anew");
        m_inquiry.ask();
        m_monitors.startAll();
    }
}

void CstaLink::Engine::registerAtSwitch(bool alsoDevices) {
    send(m_messages.systemRegister(alsoDevices), [this, alsoDevices](const Answer& answer) {
        m_registrationRefused = answer.kind == Answer::Kind::eRefused;
        if (!m_registrationRefused) {
            return;
        }
        CSTA_LINK_LOG(4, "the switch does not register us for its status%s: %s",
                      alsoDevices ? " and the phone's devices" : "", answer.value.c_str());
        if (alsoDevices) {
            registerAtSwitch(false);
        }
    });
}

/// A service starts its monitors of the devices when it is told of them. When one of these requests failed (the connection
/// was lost, the switch was not ready), only telling it once more brings that monitor back.
void CstaLink::Engine::devicesFound(const std::vector<LineDevice>& devices) {
    m_receivers.deliverDevices(devices, m_monitors.takeFailedStart());
}

void CstaLink::Engine::updateStatus() {
    const Status status{m_connection.isConnected(), m_connection.isConnected() && m_monitors.isMonitoring()};
    if (status == m_lastStatus) {
        return;
    }
    m_lastStatus = status;
    m_connectedNow = status.connected;
    m_monitoringNow = status.monitoring;
    if (m_listener) {
        m_listener(status);
    }
}

}  // namespace host
