#include "host/switch/server/SwitchCore.h"

#include <system_error>
#include <utility>

#include <asio/ip/address.hpp>
#include <asio/post.hpp>

#include "host/csta-wire/Frame.h"
#include "host/switch/scenario/CallLogText.h"
#include "host/switch/server/EventWriter.h"
#include "platform/logging/Logging.h"

namespace host {

namespace {

using asio::ip::tcp;

constexpr const char* kComponent = "CSTA Switch";

tcp::acceptor listeningOn(asio::io_context& io, const SwitchOptions& options) {
    const tcp::endpoint endpoint(asio::ip::make_address(options.address), options.port);
    return {io, endpoint, true};
}

/// The root element of a message that was written by `MessageWriter`.
std::string nameOf(std::string_view xml) {
    const std::size_t root = xml.find("?><") + 3;
    return std::string(xml.substr(root, xml.find_first_of(" />", root) - root));
}

}  // namespace

SwitchCore::SwitchCore(const SwitchOptions& options, CallLogStore& callLogs)
    : m_options(options),
      m_callLogs(callLogs),
      m_work(m_io.get_executor()),
      m_acceptor(listeningOn(m_io, options)),
      m_responses(options.edition, options.device, m_monitors, callLogs, [this] { return liveCalls(); }) {
    accept();
}

void SwitchCore::play(Scenario scenario, PlayOptions options) {
    const std::string device = scenario.device.empty() ? m_options.device : scenario.device;
    m_responses.addLines(device, scenario.lines);
    ScenarioPlayer::Handlers handlers{
        .event = [this](const SimulatedEvent& event) { publish(event); },
        .status = [this](const std::string& word) { sendSystemStatus(word); },
        .disconnect = [this] { dropClients(); },
        .callLog = [this, device,
                    options](const ScenarioStep& step) { changeCallLog(device, step, options); },
        .newCallId = [this] { return std::to_string(++m_lastCall); },
        .isMonitored = [this](const std::string& number) { return !m_monitors.ofDevice(number).empty(); },
        .finished =
            [finished = options.finished] {
                if (finished) {
                    finished();
                }
            }};
    m_players.push_back(std::make_unique<ScenarioPlayer>(m_io, std::move(scenario), std::move(options),
                                                         m_options.device, std::move(handlers)));
    m_players.back()->start();
}

void SwitchCore::sendSystemStatus(const std::string& word) {
    m_responses.setStatus(word);
    for (const int client : std::set<int>(m_registered)) {
        sendRequest(client, m_responses.systemStatus(word));
    }
}

void SwitchCore::stopMonitors(const std::string& device) {
    for (const SwitchMonitor* monitor : m_monitors.ofDevice(device)) {
        const SwitchMonitor stopped = *monitor;
        m_monitors.remove(stopped.id);
        sendRequest(stopped.client, m_responses.monitorStop(stopped.id));
    }
}

void SwitchCore::dropClients() {
    for (const auto& [number, client] : ClientMap(m_clients)) {
        client->close();
        removeClient(number);
    }
}

void SwitchCore::close() {
    std::error_code ignored;
    m_acceptor.close(ignored);
    for (const std::unique_ptr<ScenarioPlayer>& player : m_players) {
        player->stop();
    }
    dropClients();
    m_work.reset();
}

std::vector<LiveCall> SwitchCore::liveCalls() const {
    std::vector<LiveCall> calls;
    for (const std::unique_ptr<ScenarioPlayer>& player : m_players) {
        player->addLiveCalls(calls);
    }
    return calls;
}

void SwitchCore::accept() {
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

void SwitchCore::addClient(tcp::socket socket) {
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
    client->start();
    if (m_options.speaksFirst) {
        send(number, 0, m_responses.systemStatus("enabled"));
    }
}

void SwitchCore::received(SwitchClient& client, const Frame& frame) {
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

void SwitchCore::respond(SwitchClient& client, int invokeId, const WireDocument& request) {
    const int number = client.number();
    const std::string name(request.name());
    switch (responseModeOf(name)) {
        case ResponseMode::eNormal: break;
        case ResponseMode::eNoResponse: return;
        case ResponseMode::eRefusal: send(number, invokeId, m_responses.refusal()); return;
        case ResponseMode::eWrongResponse: send(number, invokeId, m_responses.wrongResponse(name)); return;
        case ResponseMode::eDisconnect:
            client.close();
            removeClient(number);
            return;
    }
    const RequestResponder::Outcome outcome = m_responses.respond(request, number);
    if (outcome.registered) {
        m_registered.insert(number);
    }
    if (outcome.response) {
        send(number, invokeId, *outcome.response);
    }
    if (outcome.followUp) {
        sendRequest(number, *outcome.followUp);
    }
    for (const auto& [device, events] : outcome.callLogChanges) {
        notifyCallLog(device, events, m_options.echoDeletions ? kNoClient : number);
    }
    if (outcome.monitorStarted) {
        for (const std::unique_ptr<ScenarioPlayer>& player : m_players) {
            player->monitorStarted();
        }
    }
}

void SwitchCore::removeClient(int number) {
    m_monitors.removeClient(number);
    m_registered.erase(number);
    m_clients.erase(number);
}

void SwitchCore::publish(const SimulatedEvent& event) {
    const EventSchema& schema = eventSchema(event.type);
    for (const SimulatedEvent::Listener& listener : event.listeners) {
        for (const SwitchMonitor* monitor : m_monitors.ofDevice(listener.device)) {
            if (!monitor->filter.suppresses(schema.filterGroup, schema.filterMember)) {
                send(monitor->client, Frame::kEventInvokeId,
                     writeEvent(m_responses.nameSpace(), event, monitor->id, listener.localConnection));
            }
        }
    }
    for (const FinishedCall& call : m_callLogBuilder.process(event)) {
        if (m_options.callLog) {
            notifyCallLog(call.device, m_callLogs.change(call.device, [&call](CallLog& log) {
                return log.add(call.log, call.party.anonymous
                                             ? CallLog::Party()
                                             : CallLog::Party{call.party.number, call.party.name, {}});
            }));
        }
    }
}

void SwitchCore::changeCallLog(const std::string& device, const ScenarioStep& step,
                               const PlayOptions& options) {
    using Action = ScenarioStep::Action;
    if (step.action == Action::eLogPrint) {
        if (options.print) {
            options.print(callLogText(m_callLogs.entries(device)));
        }
        return;
    }
    notifyCallLog(device, m_callLogs.change(device, [&step](CallLog& log) {
        switch (step.action) {
            case Action::eLogAdd: return log.add(step.log, {step.to.number, step.to.name, step.word});
            case Action::eLogDelete: return log.remove(step.log, step.to.number);
            default: return log.clear(step.log);
        }
    }));
}

/// The client that requested the deletions of single entries, if any, is not notified of them.
void SwitchCore::notifyCallLog(const std::string& device, const CallLog::Events& events, int requester) {
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

void SwitchCore::send(int client, int invokeId, const std::string& xml) {
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

void SwitchCore::trace(const SwitchMessage& message) const {
    if (loggingOnAppUni(kComponent, 6)) {
        const bool sent = message.direction == SwitchMessage::Direction::eSent;
        logAppUni(kComponent, __FILE_NAME__, 6, __LINE__, "%s client %d, %04d %s: %s", sent ? "to" : "from",
                  message.client, message.invokeId, message.name.c_str(), message.xml.c_str());
    }
    if (m_options.messageListener) {
        m_options.messageListener(message);
    }
}

void SwitchCore::sendRequest(int client, const std::string& xml) {
    const int id = m_ids.next([](int /*taken*/) { return false; }).value_or(InvokeIds::kFirst);
    send(client, id, xml);
}

ResponseMode SwitchCore::responseModeOf(std::string_view request) const {
    const auto found = m_responseModes.find(request);
    return found == m_responseModes.end() ? ResponseMode::eNormal : found->second;
}

}  // namespace host
