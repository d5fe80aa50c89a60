#include "host/csta/association/SwitchLink.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <utility>

#include <asio/post.hpp>

#include "host/csta-events/SnapshotReader.h"
#include "host/csta/association/SystemStatusValues.h"
#include "host/csta/requests/LinkLog.h"
#include "host/log/PrivateText.h"

namespace host {

SwitchLink::SwitchLink(SwitchLinkConfig config)
    : m_config(std::move(config)),
      m_messages(m_config.edition),
      m_work(m_io.get_executor()),
      m_pending(m_io, m_config.requestTimeout, [this] { sendWaiting(); }),
      m_connection(m_io, {.host = m_config.host, .port = m_config.port, .tls = m_config.tls},
                   ExponentialBackoff(m_config.reconnectFirst, m_config.reconnectMax),
                   {[this] { connected(); }, [this](const Frame& frame) { received(frame); },
                    [this](const std::string& reason) { lost(reason); }, [this] { endEvents(); }},
                   {}),
      m_session(m_io, m_config.session == "application-session", m_messages,
                [this](const std::string& xml, PendingRequests::Handler handler) {
                    send(nullptr, xml, std::move(handler));
                },
                {[this] { ready(); }, [this](const std::string& reason) { m_connection.abandon(reason); }}),
      m_threads(m_io, [this] { m_connection.abandon("a message could not be handled"); }) {}

SwitchLink::~SwitchLink() {
    stop();
}

void SwitchLink::start() {
    asio::post(m_io, [this] { m_connection.open(); });
}

void SwitchLink::stop() {
    const std::lock_guard joining(m_joinLock);
    {
        const std::lock_guard lock(m_acceptingLock);
        if (!std::exchange(m_accepting, false)) {
            return;
        }
    }
    asio::post(m_io, [this] {
        m_connection.close();
        m_session.connectionLost();
        failWaiting(nullptr);
        m_pending.failAll();
        m_references.clear();
        for (LinkedLine* const line : m_lines) {
            line->connectionLost();
        }
        m_work.reset();
    });
    m_threads.join();
}

bool SwitchLink::post(std::function<void()> work) {
    const std::lock_guard lock(m_acceptingLock);
    if (m_accepting) {
        asio::post(m_io, std::move(work));
    }
    return m_accepting;
}

void SwitchLink::add(LinkedLine& line) {
    m_lines.push_back(&line);
    if (isConnected()) {
        line.connected();
    }
    if (isReady()) {
        if (isInService(m_statusWord)) {
            line.rememberSystemStatus(m_statusWord);
        }
        line.ready();
    }
}

void SwitchLink::remove(LinkedLine& line) {
    std::erase(m_lines, &line);
    std::erase(m_withEvents, &line);
    m_references.dropAll(line);
    failWaiting(&line);
    m_pending.failAll(&line);
}

void SwitchLink::send(const LinkedLine* line, const std::string& xml, PendingRequests::Handler handler) {
    if (!isConnected()) {
        handler({});
        return;
    }
    Waiting request{line, xml, std::move(handler)};
    if (m_waiting.empty() && m_pending.count() < kWindow) {
        sendNow(std::move(request));
    } else {
        m_waiting.push_back(std::move(request));
    }
}

void SwitchLink::sendNow(Waiting request) {
    // There is a free id: they are more than the window has places.
    const std::optional<int> id = m_pending.add(request.line, std::move(request.handler));
    m_connection.send(*id, request.xml);
}

void SwitchLink::sendWaiting() {
    while (!m_waiting.empty() && m_pending.count() < kWindow && isConnected()) {
        Waiting next = std::move(m_waiting.front());
        m_waiting.pop_front();
        sendNow(std::move(next));
    }
}

void SwitchLink::failWaiting(const LinkedLine* line) {
    std::vector<Waiting> failed;
    std::erase_if(m_waiting, [&](Waiting& each) {
        const bool fails = line == nullptr || each.line == line;
        if (fails) {
            failed.push_back(std::move(each));
        }
        return fails;
    });
    for (const Waiting& each : failed) {
        each.handler({});
    }
}

// ---- what happens on the connection

void SwitchLink::connected() {
    CSTA_LINK_LOG(4, "connected to the switch at %s:%u%s", m_config.host.c_str(), unsigned{m_config.port},
                  m_outageLogged ? " again" : "");
    m_outageLogged = false;
    m_replacementsLogged = false;
    m_wasConnected = true;
    m_statusWord.clear();
    m_notifyStatus = m_everConnected;
    m_everConnected = true;
    for (LinkedLine* const line : m_lines) {
        line->connected();
    }
    m_session.open();
}

/// Sends all requests at once: the link also works with a switch that responds to MonitorStart only.
void SwitchLink::ready() {
    m_monitorsDoubtful = false;
    send(nullptr, m_messages.requestSystemStatus(), [this](const SwitchResponse& response) {
        if (response.kind == SwitchResponse::Kind::eLost) {
            return;
        }
        const std::string word = response.kind == SwitchResponse::Kind::eResponse
                                     ? childText(response.document->root(), "systemStatus")
                                     : "";
        if (std::exchange(m_notifyStatus, false)) {
            deliverStatus(word.empty() ? "enabled" : word);
        } else if (isInService(word)) {
            m_statusWord = word;
            for (LinkedLine* const line : m_lines) {
                line->rememberSystemStatus(word);
            }
        }
    });
    registerAtSwitch();
    for (LinkedLine* const line : m_lines) {
        line->ready();
    }
}

void SwitchLink::lost(const std::string& reason) {
    endEvents();
    if (!std::exchange(m_outageLogged, true)) {
        CSTA_LINK_LOG(3, "the switch at %s:%u is %s: %s; trying again", m_config.host.c_str(),
                      unsigned{m_config.port}, m_wasConnected ? "lost" : "not there", reason.c_str());
    }
    m_wasConnected = false;
    m_session.connectionLost();
    failWaiting(nullptr);
    m_pending.failAll();
    m_references.clear();
    for (LinkedLine* const line : m_lines) {
        line->connectionLost();
    }
}

void SwitchLink::received(const Frame& frame) {
    std::string fault;
    std::optional<WireDocument> document = WireDocument::parse(frame.xml, fault);
    if (!document) {
        CSTA_LINK_LOG(3, "a message from the switch is dropped: %s", fault.c_str());
        return;
    }
    if (document->hasReplacements() && !std::exchange(m_replacementsLogged, true)) {
        CSTA_LINK_LOG(3, "%s", "messages of the switch have characters that XML forbids; read as spaces");
    }
    handOver(frame, std::move(*document));
}

void SwitchLink::handOver(const Frame& frame, WireDocument document) {
    const MessageKind kind = document.kind();
    if (kind != MessageKind::eEvent) {
        flushEvents();  // the events before a response are posted before it
    }
    switch (kind) {
        case MessageKind::eEvent: onEvent(std::move(document)); break;
        case MessageKind::eResponse:
        case MessageKind::eError:
            if (!m_pending.complete(frame.invokeId, document)) {
                CSTA_LINK_LOG(4, "%s with id %d is late or belongs to no request",
                              std::string(document.name()).c_str(), frame.invokeId);
                const PendingRequests::Owner owner = m_pending.ownerOfLate(frame.invokeId);
                const auto line = std::find(m_lines.begin(), m_lines.end(), owner);
                if (line != m_lines.end()) {
                    (*line)->onLateResponse(document);
                }
            }
            break;
        case MessageKind::eRequest:
            if (document.name() == "SnapshotDeviceData" || document.name() == "SnapshotCallData" ||
                document.name() == "SwitchingFunctionDevices") {
                // The standard defines no response to them.
                onSegment(std::move(document));
            } else {
                respond(frame.invokeId, document);
            }
            break;
        case MessageKind::eNotice: m_session.terminated(); break;
        case MessageKind::eForeign:
            CSTA_LINK_LOG(6, "%s is no CSTA message", std::string(document.name()).c_str());
            break;
    }
}

void SwitchLink::onEvent(WireDocument event) {
    std::string id = childText(event.root(), "monitorCrossRefID");
    const std::vector<LinkedLine*> lines = m_references.linesOf(ReferenceKind::eMonitor, id);
    for (LinkedLine* const line : lines) {
        if (std::find(m_withEvents.begin(), m_withEvents.end(), line) == m_withEvents.end()) {
            m_withEvents.push_back(line);
        }
        line->onEvent(event);
    }
    if (!lines.empty()) {
        return;
    }
    if (m_pending.count() > 0) {
        m_references.keepEarly(ReferenceKind::eMonitor, std::move(id), std::move(event),
                               CrossReferences::Clock::now());
    } else {
        CSTA_LINK_LOG(6, "an event of an unknown monitor: %s", id.c_str());
    }
}

void SwitchLink::onSegment(WireDocument segment) {
    std::string id = SnapshotReader::crossRefIdOf(segment);
    const std::vector<LinkedLine*> lines = m_references.linesOf(ReferenceKind::eService, id);
    for (LinkedLine* const line : lines) {
        line->onSegment(segment);
    }
    if (!lines.empty()) {
        return;
    }
    if (id.empty() && segment.name() == "SwitchingFunctionDevices") {
        // Some switches leave the reference out.
        const auto line = std::find_if(m_lines.begin(), m_lines.end(),
                                       [](const LinkedLine* each) { return each->awaitsDevices(); });
        if (line != m_lines.end()) {
            (*line)->onSegment(segment);
            return;
        }
    }
    if (!id.empty() && m_pending.count() > 0) {
        m_references.keepEarly(ReferenceKind::eService, std::move(id), std::move(segment),
                               CrossReferences::Clock::now());
    } else {
        CSTA_LINK_LOG(5, "%s belongs to no request", std::string(segment.name()).c_str());
    }
}

void SwitchLink::respond(int invokeId, const WireDocument& document) {
    const std::string_view name = document.name();
    if (name == "SystemStatus") {
        m_connection.send(invokeId, m_messages.systemStatusResponse());
        systemStatus(childText(document.root(), "systemStatus"));
    } else if (name == "RequestSystemStatus") {
        m_connection.send(invokeId, m_messages.requestSystemStatusResponse());
    } else if (name == "MonitorStop") {
        m_connection.send(invokeId, m_messages.monitorStopResponse());
        stoppedBySwitch(childText(document.root(), "monitorCrossRefID"));
    } else if (name == "SwitchingFunctionDevicesChanged") {
        m_connection.send(invokeId, m_messages.switchingFunctionDevicesChangedResponse());
        if (isReady()) {
            for (LinkedLine* const line : m_lines) {
                line->devicesChanged();
            }
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

void SwitchLink::stoppedBySwitch(const std::string& id) {
    for (LinkedLine* const line : m_references.linesOf(ReferenceKind::eMonitor, id)) {
        m_references.drop(*line, ReferenceKind::eMonitor, id);
        line->monitorStopped(id);
    }
}

void SwitchLink::systemStatus(std::string_view word) {
    if (!word.empty()) {
        m_notifyStatus = false;
    }
    deliverStatus(word);
    if (requiresMonitorRestart(word)) {
        m_monitorsDoubtful = true;
    } else if (isInService(word) && std::exchange(m_monitorsDoubtful, false) && isReady()) {
        CSTA_LINK_LOG(4, "%s", "the switch is back in service; restarting all monitors");
        for (LinkedLine* const line : m_lines) {
            line->restartMonitors();
        }
        m_callsDoubtful = false;
    } else if (isInService(word) && std::exchange(m_callsDoubtful, false) && isReady()) {
        for (LinkedLine* const line : m_lines) {
            line->askForCalls();
        }
    }
}

void SwitchLink::deliverStatus(std::string_view word) {
    m_statusWord = word;
    for (LinkedLine* const line : m_lines) {
        line->onSystemStatus(word);
    }
    if (dropsCalls(word)) {
        m_callsDoubtful = true;
    }
}

void SwitchLink::registerAtSwitch(bool withDevices) {
    send(nullptr, m_messages.systemRegister(withDevices),
         [this, withDevices](const SwitchResponse& response) {
             m_registrationRefused = response.kind == SwitchResponse::Kind::eRefused;
             if (!m_registrationRefused) {
                 return;
             }
             CSTA_LINK_LOG(4, "the switch does not register us for its status%s: %s",
                           withDevices ? " and the phone's devices" : "",
                           loggedReason(response.value).c_str());
             if (withDevices) {
                 registerAtSwitch(false);
             }
         });
}

void SwitchLink::flushEvents() {
    for (LinkedLine* const line : m_withEvents) {
        line->flushEvents();
    }
}

void SwitchLink::endEvents() {
    for (LinkedLine* const line : std::exchange(m_withEvents, {})) {
        line->endEvents();
    }
}

}  // namespace host
