#include "host/csta-server/CstaServer.h"

#include <optional>
#include <system_error>
#include <utility>

#include <asio/ip/address.hpp>
#include <asio/post.hpp>
#include <asio/steady_timer.hpp>

#include "host/csta-server/EventWriter.h"
#include "host/csta-wire/Frame.h"
#include "platform/logging/Logging.h"

namespace host {

namespace {

using asio::ip::tcp;

constexpr const char* kComponent = "CSTA Switch";

tcp::acceptor listeningOn(asio::io_context& io, const CstaServerOptions& options) {
    const tcp::endpoint endpoint(asio::ip::make_address(options.address), options.port);
    return {io, endpoint, true};
}

/// The root element of a message that was written by `MessageWriter`.
std::string nameOf(std::string_view xml) {
    const std::size_t root = xml.find("?><") + 3;
    return std::string(xml.substr(root, xml.find_first_of(" />", root) - root));
}

}  // namespace

CstaServer::CstaServer(asio::io_context& io, CstaServerOptions options, CallLogStore& callLogs,
                       Handlers handlers)
    : m_options(std::move(options)),
      m_handlers(std::move(handlers)),
      m_io(io),
      m_acceptor(listeningOn(io, m_options)),
      m_responses({.edition = m_options.edition,
                   .ownDevice = m_options.device,
                   .hasOnlyOwnDevice = m_options.hasOnlyOwnDevice},
                  m_monitors, callLogs, m_handlers.liveCalls) {
    accept();
}

void CstaServer::sendSystemStatus(const std::string& word) {
    m_responses.setStatus(word);
    for (const int client : std::set<int>(m_registered)) {
        sendRequest(client, m_responses.systemStatus(word));
    }
}

void CstaServer::stopMonitors(const std::string& device) {
    for (const SwitchMonitor* monitor : m_monitors.ofDevice(device)) {
        const SwitchMonitor stopped = *monitor;
        m_monitors.remove(stopped.id);
        sendRequest(stopped.client, m_responses.monitorStop(stopped.id));
    }
}

void CstaServer::dropClients() {
    for (const auto& [number, client] : ClientMap(m_clients)) {
        client->close();
        removeClient(number);
    }
}

void CstaServer::close() {
    std::error_code ignored;
    m_acceptor.close(ignored);
    dropClients();
}

void CstaServer::accept() {
    m_acceptor.async_accept([this](std::error_code error, tcp::socket socket) {
        if (!m_acceptor.is_open()) {
            return;
        }
        if (!error) {
            addClient(std::move(socket));
        }
        accept();
    });
}

void CstaServer::addClient(tcp::socket socket) {
    const int number = ++m_lastClient;
    auto client = std::make_shared<SwitchClient>(
        std::move(socket), number,
        SwitchClient::Handlers{[this](SwitchClient& from, const Frame& frame) { received(from, frame); },
                               [this](SwitchClient& closed) {
                                   // Posted, because a caller of `send` may be iterating over the monitors.
                                   asio::post(m_io, [this, lost = closed.number()] { removeClient(lost); });
                               }});
    m_clients.emplace(number, client);
    if (loggingOnAppUni(kComponent, 5)) {
        logAppUni(kComponent, __FILE_NAME__, 5, __LINE__, "client %d has connected", number);
    }
    client->start(m_options.certificate ? m_options.certificate->context() : nullptr, [this, number] {
        if (m_options.speaksFirst) {
            send(number, 0, m_responses.systemStatus("enabled"));
        }
    });
}

void CstaServer::received(SwitchClient& client, const Frame& frame) {
    std::string fault;
    const std::optional<WireDocument> document = WireDocument::parse(frame.xml, fault);
    if (!document) {
        return;
    }
    trace({.direction = SwitchMessage::Direction::eReceived,
           .client = client.number(),
           .invokeId = frame.invokeId,
           .name = std::string(document->name()),
           .xml = frame.xml});
    if (document->kind() == MessageKind::eRequest) {
        respond(client, frame.invokeId, *document);
    }
}

void CstaServer::respond(SwitchClient& client, int invokeId, const WireDocument& request) {
    const int number = client.number();
    const std::string name(request.name());
    const ResponseMode mode = responseModeOf(name);
    switch (mode) {
        case ResponseMode::eNormal:
        case ResponseMode::eLate: break;
        case ResponseMode::eNotSupported: send(number, invokeId, m_responses.notSupported()); return;
        case ResponseMode::eNoResponse: return;
        case ResponseMode::eRefusal: send(number, invokeId, m_responses.refusal()); return;
        case ResponseMode::eWrongResponse: send(number, invokeId, m_responses.wrongResponse(name)); return;
        case ResponseMode::eDisconnect:
            client.close();
            removeClient(number);
            return;
    }
    const Reply reply = [this, number, invokeId, mode](const std::string& xml) {
        if (mode == ResponseMode::eLate) {
            sendLater(number, invokeId, xml);
        } else {
            send(number, invokeId, xml);
        }
    };
    if (!m_handlers.service || !m_handlers.service(request, reply)) {
        respondNormally(number, reply, request);
    }
}

void CstaServer::respondNormally(int client, const Reply& reply, const WireDocument& request) {
    const RequestResponder::Outcome outcome = m_responses.respond(request, client);
    if (outcome.registered) {
        m_registered.insert(client);
    }
    if (outcome.response) {
        reply(*outcome.response);
    }
    if (outcome.followUp) {
        sendRequest(client, *outcome.followUp);
    }
    for (const auto& [device, events] : outcome.callLogChanges) {
        notifyCallLog(device, events, m_options.echoDeletions ? kNoClient : client);
    }
    if (outcome.monitorStarted && m_handlers.monitorStarted) {
        m_handlers.monitorStarted();
    }
}

void CstaServer::removeClient(int number) {
    m_monitors.removeClient(number);
    m_registered.erase(number);
    m_clients.erase(number);
}

void CstaServer::publish(const SwitchEvent& event) {
    const EventSchema& schema = eventSchema(event.type);
    for (const SwitchEvent::Listener& listener : event.listeners) {
        for (const SwitchMonitor* monitor : m_monitors.ofDevice(listener.device)) {
            if (!monitor->filter.suppresses(schema.filterGroup, schema.filterMember)) {
                send(monitor->client, Frame::kEventInvokeId,
                     writeEvent(m_responses.nameSpace(), event, monitor->id, listener.localConnection));
            }
        }
    }
}

void CstaServer::notifyCallLog(const std::string& device, const CallLog::Events& events, int requester) {
    const EventSchema& schema = eventSchema(WireEvent::ePrivate);
    for (const SwitchMonitor* monitor : m_monitors.ofDevice(device)) {
        if (monitor->filter.suppresses(schema.filterGroup, schema.filterMember)) {
            continue;
        }
        for (const CallLogEntryEvent& event : events) {
            if (monitor->client != requester || CallLog::isOfWholeLog(event)) {
                send(monitor->client, Frame::kEventInvokeId,
                     writeCallLogEvent(m_responses.nameSpace(), event, monitor->id));
            }
        }
    }
}

void CstaServer::send(int client, int invokeId, const std::string& xml) {
    const auto found = m_clients.find(client);
    if (found == m_clients.end()) {
        return;
    }
    trace({.direction = SwitchMessage::Direction::eSent,
           .client = client,
           .invokeId = invokeId,
           .name = nameOf(xml),
           .xml = xml});
    // `send` may close the client.
    const std::shared_ptr<SwitchClient> receiver = found->second;
    receiver->send(invokeId, xml);
}

void CstaServer::sendLater(int client, int invokeId, const std::string& xml) {
    auto timer = std::make_shared<asio::steady_timer>(m_io, kLate);
    timer->async_wait([this, timer, client, invokeId, xml](std::error_code error) {
        if (!error) {
            send(client, invokeId, xml);
        }
    });
}

void CstaServer::trace(const SwitchMessage& message) const {
    if (loggingOnAppUni(kComponent, 6)) {
        const bool sent = message.direction == SwitchMessage::Direction::eSent;
        logAppUni(kComponent, __FILE_NAME__, 6, __LINE__, "%s client %d, %04d %s: %s", sent ? "to" : "from",
                  message.client, message.invokeId, message.name.c_str(), message.xml.c_str());
    }
    if (m_options.messageListener) {
        m_options.messageListener(message);
    }
}

void CstaServer::sendRequest(int client, const std::string& xml) {
    const int id = m_ids.next([](int /*taken*/) { return false; }).value_or(InvokeIds::kFirst);
    send(client, id, xml);
}

ResponseMode CstaServer::responseModeOf(std::string_view request) const {
    const auto found = m_responseModes.find(request);
    return found == m_responseModes.end() ? ResponseMode::eNormal : found->second;
}

}  // namespace host
