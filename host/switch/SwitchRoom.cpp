#include "host/switch/SwitchRoom.h"

#include <system_error>
#include <utility>

#include <asio/ip/address.hpp>
#include <asio/post.hpp>

#include "host/csta-wire/Frame.h"
#include "host/switch/EventWriter.h"
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

SwitchRoom::SwitchRoom(const SwitchOptions& options, SwitchLog& log)
    : m_options(options),
      m_log(log),
      m_work(m_io.get_executor()),
      m_acceptor(listeningOn(m_io, options)),
      m_answers(options.edition, options.device, m_monitors) {
    accept();
}

void SwitchRoom::play(Scenario scenario, PlayOptions options) {
    const std::string device = scenario.device().empty() ? m_options.device : scenario.device();
    ScenarioPlayer::Stage stage{[this](const CallOccurrence& occurrence) { happens(occurrence); },
                                [this](const std::string& word) { sendSystemStatus(word); },
                                [this] { return std::to_string(++m_lastCall); },
                                [finished = options.finished] {
                                    if (finished) {
                                        finished();
                                    }
                                }};
    m_players.push_back(std::make_unique<ScenarioPlayer>(m_io, std::move(scenario), std::move(options),
                                                         m_options.device, std::move(stage)));
    m_players.back()->start(!m_monitors.ofDevice(device).empty());
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
    m_log.add({SwitchLogEntry::Direction::eReceived, client.number(), frame.invokeId,
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
    if (outcome.monitorStarted) {
        const std::string device = childText(childNamed(request.root(), "monitorObject"), "deviceObject");
        monitorStarted(device.empty() ? m_options.device : device);
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
}

void SwitchRoom::send(int client, int invokeId, const std::string& xml) {
    const auto found = m_clients.find(client);
    if (found == m_clients.end()) {
        return;
    }
    m_log.add({SwitchLogEntry::Direction::eSent, client, invokeId, nameOf(xml), xml});
    const std::shared_ptr<SwitchClient> kept = found->second;
    kept->send(invokeId, xml);
}

void SwitchRoom::sendRequest(int client, const std::string& xml) {
    const int id = m_ids.next([](int /*taken*/) { return false; }).value_or(InvokeIds::kFirst);
    send(client, id, xml);
}

void SwitchRoom::monitorStarted(const std::string& device) {
    for (const std::unique_ptr<ScenarioPlayer>& player : m_players) {
        player->monitorStarted(device);
    }
}

SwitchAnswering SwitchRoom::answeringOf(std::string_view request) const {
    const auto found = m_answering.find(request);
    return found == m_answering.end() ? SwitchAnswering::eNormally : found->second;
}

}  // namespace host
