#include "host/switch/server/SwitchRoom.h"

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

/// The root element of a message that we wrote ourselves.
std::string nameOf(std::string_view xml) {
    const std::size_t root = xml.find("?><") + 3;
    return std::string(xml.substr(root, xml.find_first_of(" />", root) - root));
}

}  // namespace

SwitchRoom::SwitchRoom(const SwitchOptions& options, SwitchLog& log, SwitchCallLogs& callLogs)
    : m_options(options),
      m_log(log),
      m_callLogs(callLogs),
      m_work(m_io.get_executor()),
      m_acceptor(listeningOn(m_io, options)),
      m_answers(options.edition, options.device, m_monitors, callLogs) {
    accept();
}

void SwitchRoom::play(Scenario scenario, PlayOptions options) {
    const std::string device = scenario.device().empty() ? m_options.device : scenario.device();
    m_answers.addLines(device, scenario.lines());
    ScenarioPlayer::Stage stage{
        [this](const CallOccurrence& occurrence) { happens(occurrence); },
        [this](const std::string& word) { sendSystemStatus(word); },
        [this, device, options](const ScenarioStep& step) { changeCallLog(device, step, options); },
        [this] { return std::to_string(++m_lastCall); },
        [this](const std::string& number) { return !m_monitors.ofDevice(number).empty(); },
        [finished = options.finished] {
            if (finished) {
                finished();
            }
        }};
    m_players.push_back(std::make_unique<ScenarioPlayer>(m_io, std::move(scenario), std::move(options),
                                                         m_options.device, std::move(stage)));
    m_players.back()->start();
}

void SwitchRoom::sendSystemStatus(const std::string& word) {
    m_answers.setStatus(word);
    for (const int client : std::set<int>(m_registered)) {
        sendRequest(client, m_answers.systemStatus(word));
    }
}

void SwitchRoom::stopMonitors(const std::string& device) {
    for (const SwitchMonitor* monitor : m_monitors.ofDevice(device)) {
        const SwitchMonitor stopped = *monitor;
        m_monitors.remove(stopped.id);
        sendRequest(stopped.client, m_answers.monitorStop(stopped.id));
    }
}

void SwitchRoom::dropClients() {
    for (const auto& [number, client] : ClientMap(m_clients)) {
        client->close();
        clientGone(number);
    }
}

void SwitchRoom::close() {
    std::error_code ignored;
    m_acceptor.close(ignored);
    for (const std::unique_ptr<ScenarioPlayer>& player : m_players) {
        player->stop();
    }
    dropClients();
    m_work.reset();
}

void SwitchRoom::accept() {
    m_acceptor.async_accept([this](std::error_code error, tcp::socket socket) {
        if (!m_acceptor.is_open()) {
            return;
        }
        if (!error) {
            welcome(std::move(socket));
        }
        accept();
    });
}

void SwitchRoom::welcome(tcp::socket socket) {
    const int number = ++m_lastClient;
    auto client = std::make_shared<SwitchClient>(
        std::move(socket), number,
        SwitchClient::Handlers{[this](SwitchClient& from, const Frame& frame) { received(from, frame); },
                               [this](SwitchClient& gone) {
                                   // Later: whoever was just sending may be walking through its monitors.
                                   asio::post(m_io, [this, lost = gone.number()] { clientGone(lost); });
                               }});
    m_clients.emplace(number, client);
    if (loggingOnAppUni(kComponent, 5)) {
        logAppUni(kComponent, __FILE_NAME__, 5, __LINE__, "client %d is here", number);
    }
    client->start();
    if (m_options.speaksFirst) {
        send(number, 0, m_answers.systemStatus("enabled"));
    }
}

void SwitchRoom::received(SwitchClient& client, const Frame& frame) {
    std::string fault;
    const std::optional<WireDocument> document = WireDocument::parse(frame.xml, fault);
    if (!document) {
        return;
    }
    note({SwitchLogEntry::Direction::eReceived, client.number(), frame.invokeId,
          std::string(document->name()), frame.xml});
    if (document->kind() == MessageKind::eRequest) {
        answer(client, frame.invokeId, *document);
    }
}

void SwitchRoom::answer(SwitchClient& client, int invokeId, const WireDocument& request) {
    const int number = client.number();
    const std::string name(request.name());
    switch (answeringOf(name)) {
        case SwitchAnswering::eNormally: break;
        case SwitchAnswering::eNever: return;
        case SwitchAnswering::eRefuse: send(number, invokeId, m_answers.refusal()); return;
        case SwitchAnswering::eWrongly: send(number, invokeId, m_answers.wrongAnswer(name)); return;
        case SwitchAnswering::eHangUp:
            client.close();
            clientGone(number);
            return;
    }
    const RequestAnswers::Outcome outcome = m_answers.answer(request, number);
    if (outcome.registered) {
        m_registered.insert(number);
    }
    if (outcome.answer) {
        send(number, invokeId, *outcome.answer);
    }
    if (outcome.sequel) {
        sendRequest(number, *outcome.sequel);
    }
    for (const auto& [device, events] : outcome.callLogChanges) {
        tellCallLog(device, events);
    }
    if (outcome.monitorStarted) {
        for (const std::unique_ptr<ScenarioPlayer>& player : m_players) {
            player->monitorStarted();
        }
    }
}

void SwitchRoom::clientGone(int number) {
    m_monitors.removeClient(number);
    m_registered.erase(number);
    m_clients.erase(number);
}

void SwitchRoom::happens(const CallOccurrence& occurrence) {
    const EventShape& shape = eventShape(occurrence.event);
    for (const CallOccurrence::Listener& listener : occurrence.listeners) {
        for (const SwitchMonitor* monitor : m_monitors.ofDevice(listener.device)) {
            if (!monitor->filter.leavesOut(shape.filterGroup, shape.filterMember)) {
                send(monitor->client, Frame::kEventInvokeId,
                     writeEvent(m_answers.nameSpace(), occurrence, monitor->id, listener.localConnection));
            }
        }
    }
    for (const FinishedCall& call : m_finishedCalls.follow(occurrence)) {
        if (m_options.callLog) {
            tellCallLog(call.device, m_callLogs.change(call.device, [&call](SwitchCallLog& log) {
                return log.file(call.log, call.party.anonymous
                                              ? SwitchCallLog::Party()
                                              : SwitchCallLog::Party{call.party.number, call.party.name, {}});
            }));
        }
    }
}

void SwitchRoom::changeCallLog(const std::string& device, const ScenarioStep& step,
                               const PlayOptions& options) {
    using Action = ScenarioStep::Action;
    if (step.action == Action::eLogPrint) {
        if (options.print) {
            options.print(callLogText(m_callLogs.entries(device)));
        }
        return;
    }
    tellCallLog(device, m_callLogs.change(device, [&step](SwitchCallLog& log) {
        switch (step.action) {
            case Action::eLogAdd: return log.file(step.log, {step.to.number, step.to.name, step.word});
            case Action::eLogDelete: return log.remove(step.log, step.to.number);
            default: return log.clear(step.log);
        }
    }));
}

void SwitchRoom::tellCallLog(const std::string& device, const SwitchCallLog::Events& events) {
    const EventShape& shape = eventShape(WireEvent::ePrivate);
    for (const SwitchMonitor* monitor : m_monitors.ofDevice(device)) {
        if (monitor->filter.leavesOut(shape.filterGroup, shape.filterMember)) {
            continue;
        }
        for (const CallLogEntryEvent& event : events) {
            send(monitor->client, Frame::kEventInvokeId,
                 writeCallLogEvent(m_answers.nameSpace(), event, monitor->id));
        }
    }
}

void SwitchRoom::send(int client, int invokeId, const std::string& xml) {
    const auto found = m_clients.find(client);
    if (found == m_clients.end()) {
        return;
    }
    note({SwitchLogEntry::Direction::eSent, client, invokeId, nameOf(xml), xml});
    const std::shared_ptr<SwitchClient> kept = found->second;
    kept->send(invokeId, xml);
}

void SwitchRoom::note(SwitchLogEntry entry) {
    if (loggingOnAppUni(kComponent, 6)) {
        const bool sent = entry.direction == SwitchLogEntry::Direction::eSent;
        logAppUni(kComponent, __FILE_NAME__, 6, __LINE__, "%s client %d, %04d %s: %s", sent ? "to" : "from",
                  entry.client, entry.invokeId, entry.name.c_str(), entry.xml.c_str());
    }
    m_log.add(std::move(entry));
}

void SwitchRoom::sendRequest(int client, const std::string& xml) {
    const int id = m_ids.next([](int /*taken*/) { return false; }).value_or(InvokeIds::kFirst);
    send(client, id, xml);
}

SwitchAnswering SwitchRoom::answeringOf(std::string_view request) const {
    const auto found = m_answering.find(request);
    return found == m_answering.end() ? SwitchAnswering::eNormally : found->second;
}

}  // namespace host
