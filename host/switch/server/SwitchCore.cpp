#include "host/switch/server/SwitchCore.h"

#include <utility>

#include "host/switch/scenario/CallLogText.h"

namespace host {

namespace {

CstaServerOptions serverOptions(const SwitchOptions& options) {
    return {.address = options.address,
            .port = options.port,
            .certificate = options.certificate,
            .device = options.device,
            .edition = options.edition,
            .speaksFirst = options.speaksFirst,
            .echoDeletions = options.echoDeletions,
            .messageListener = options.messageListener};
}

}  // namespace

SwitchCore::SwitchCore(const SwitchOptions& options, CallLogStore& callLogs)
    : m_options(options),
      m_callLogs(callLogs),
      m_work(m_io.get_executor()),
      m_server(
          m_io, serverOptions(options), callLogs,
          {.liveCalls = [this](const std::string& device) { return liveCalls(device); },
           .monitorStarted = [this] { monitorStarted(); },
           .service = [this](const WireDocument& request,
                             const CstaServer::Reply& reply) { return m_ordered.handle(request, reply); }}),
      m_ordered(m_io, m_options,
                {.event = [this](const SwitchEvent& event) { publish(event); },
                 .newCallId = [this] { return std::to_string(++m_lastCall); },
                 .isMonitored = [this](const std::string& device) { return m_server.isMonitored(device); },
                 .findCall = [this](std::string_view callId,
                                    std::string_view device) { return findCall(callId, device); }}) {}

void SwitchCore::play(Scenario scenario, PlayOptions options) {
    const std::string device = scenario.device.empty() ? m_options.device : scenario.device;
    m_server.addLines(device, scenario.lines);
    ScenarioPlayer::Handlers handlers{
        .event = [this](const SwitchEvent& event) { publish(event); },
        .status = [this](const std::string& word) { m_server.sendSystemStatus(word); },
        .disconnect = [this] { m_server.dropClients(); },
        .callLog = [this, device,
                    options](const ScenarioStep& step) { changeCallLog(device, step, options); },
        .newCallId = [this] { return std::to_string(++m_lastCall); },
        .isMonitored = [this](const std::string& number) { return m_server.isMonitored(number); },
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

void SwitchCore::play(const TrafficOptions& traffic, const TrafficListeners& listeners) {
    TrafficPlayer::Handlers handlers{
        .event = [this](const SwitchEvent& event) { publish(event); },
        .newCallId = [this] { return std::to_string(++m_lastCall); },
        .isMonitored = [this](const std::string& number) { return m_server.isMonitored(number); },
        .begun =
            [listeners] {
                if (listeners.begun) {
                    listeners.begun();
                }
            },
        .ended =
            [listeners](const std::string& callId, const TrafficPart& part) {
                if (listeners.ended) {
                    listeners.ended(callId, part);
                }
            },
        .finished =
            [listeners] {
                if (listeners.finished) {
                    listeners.finished();
                }
            }};
    m_traffic.push_back(std::make_unique<TrafficPlayer>(m_io, traffic, std::move(handlers)));
    m_traffic.back()->monitorStarted();
}

void SwitchCore::close() {
    for (const std::unique_ptr<TrafficPlayer>& traffic : m_traffic) {
        traffic->stop();
    }
    for (const std::unique_ptr<ScenarioPlayer>& player : m_players) {
        player->stop();
    }
    m_ordered.close();
    m_server.close();
    m_work.reset();
}

std::vector<LiveCall> SwitchCore::liveCalls(const std::string& device) const {
    std::vector<LiveCall> calls;
    for (const std::unique_ptr<ScenarioPlayer>& player : m_players) {
        player->addLiveCalls(calls);
    }
    for (const std::unique_ptr<TrafficPlayer>& traffic : m_traffic) {
        traffic->addLiveCalls(device, calls);
    }
    m_ordered.addLiveCalls(calls);
    return calls;
}

SwitchCall* SwitchCore::findCall(std::string_view callId, std::string_view device) {
    for (const std::unique_ptr<ScenarioPlayer>& player : m_players) {
        if (SwitchCall* const call = player->calls().find(callId, device)) {
            return call;
        }
    }
    for (const std::unique_ptr<TrafficPlayer>& traffic : m_traffic) {
        if (SwitchCall* const call = traffic->find(callId, device)) {
            return call;
        }
    }
    return nullptr;
}

void SwitchCore::monitorStarted() {
    for (const std::unique_ptr<ScenarioPlayer>& player : m_players) {
        player->monitorStarted();
    }
    for (const std::unique_ptr<TrafficPlayer>& traffic : m_traffic) {
        traffic->monitorStarted();
    }
}

void SwitchCore::publish(const SwitchEvent& event) {
    m_server.publish(event);
    for (const std::unique_ptr<TrafficPlayer>& traffic : m_traffic) {
        traffic->published(event);
    }
    for (const FinishedCall& call : m_callLogBuilder.process(event)) {
        if (m_options.callLog) {
            m_server.notifyCallLog(call.device, m_callLogs.change(call.device, [&call](CallLog& log) {
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
    m_server.notifyCallLog(device, m_callLogs.change(device, [&step](CallLog& log) {
        switch (step.action) {
            case Action::eLogAdd: return log.add(step.log, {step.to.number, step.to.name, step.word});
            case Action::eLogDelete: return log.remove(step.log, step.to.number);
            default: return log.clear(step.log);
        }
    }));
}

}  // namespace host
