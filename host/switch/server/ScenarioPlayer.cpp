#include "host/switch/server/ScenarioPlayer.h"

#include <algorithm>
#include <system_error>
#include <utility>

namespace host {

namespace {

// Pause between two passes of a scenario without waits.
constexpr std::chrono::milliseconds kPassPause{100};

}  // namespace

ScenarioPlayer::ScenarioPlayer(asio::io_context& io, Scenario scenario, PlayOptions options,
                               const std::string& device, Handlers handlers)
    : m_scenario(std::move(scenario)),
      m_options(std::move(options)),
      m_device(m_scenario.device.empty() ? device : m_scenario.device),
      m_handlers(std::move(handlers)),
      m_timer(io),
      m_calls(m_device, m_scenario.lines, m_handlers.newCallId) {}

void ScenarioPlayer::start() {
    if (!m_options.awaitMonitor) {
        m_started = true;
        pauseFor(std::chrono::milliseconds(0));
        return;
    }
    monitorStarted();
}

void ScenarioPlayer::monitorStarted() {
    if (m_started || m_stopped || !m_handlers.isMonitored(m_device)) {
        return;
    }
    const std::vector<std::string>& lines = m_scenario.lines;
    m_started = std::all_of(lines.begin(), lines.end(), m_handlers.isMonitored);
    pauseFor(m_started ? std::chrono::milliseconds(0) : kLinePatience);
}

void ScenarioPlayer::stop() {
    m_stopped = true;
    m_timer.cancel();
}

void ScenarioPlayer::play() {
    for (std::size_t done = 0; done < kStepsAtOnce; ++done) {
        if (m_next == m_scenario.steps.size()) {
            endPass();
            return;
        }
        const ScenarioStep& step = m_scenario.steps[m_next++];
        perform(step);
        if (const std::chrono::milliseconds pause = paced(step); pause.count() > 0) {
            pauseFor(pause);
            return;
        }
    }
    pauseFor(std::chrono::milliseconds(0));
}

void ScenarioPlayer::pauseFor(std::chrono::milliseconds pause) {
    m_timer.expires_after(pause);
    m_timer.async_wait([this](std::error_code error) {
        if (!error && !m_stopped) {
            m_started = true;
            play();
        }
    });
}

void ScenarioPlayer::perform(const ScenarioStep& step) {
    switch (step.action) {
        case ScenarioStep::Action::eWait: break;
        case ScenarioStep::Action::eStatus: m_handlers.status(step.word); break;
        case ScenarioStep::Action::eDisconnect: m_handlers.disconnect(); break;
        case ScenarioStep::Action::eLogAdd:
        case ScenarioStep::Action::eLogDelete:
        case ScenarioStep::Action::eLogClear:
        case ScenarioStep::Action::eLogPrint: m_handlers.callLog(step); break;
        default: publish(m_calls.perform(step)); break;
    }
}

/// Hangs up all remaining calls before the scenario is repeated. At the final end the calls stay as they are.
void ScenarioPlayer::endPass() {
    if (!m_options.loop) {
        m_stopped = true;
        m_handlers.finished();
        return;
    }
    publish(m_calls.hangUpAll());
    m_next = 0;
    pauseFor(m_scenario.waitTime.count() > 0 || m_options.rate > 0 ? std::chrono::milliseconds(0)
                                                                   : kPassPause);
}

void ScenarioPlayer::publish(const SwitchEvents& events) const {
    for (const SwitchEvent& event : events) {
        m_handlers.event(event);
    }
}

/// The pause after the step. With a rate, the waits are scaled so that the duration of a pass fits the number
/// of its calls. A scenario without waits pauses after each new call.
std::chrono::milliseconds ScenarioPlayer::paced(const ScenarioStep& step) const {
    if (m_options.rate <= 0 || m_scenario.callCount == 0) {
        return step.duration;
    }
    const double passTime = 1000.0 * static_cast<double>(m_scenario.callCount) / m_options.rate;
    const auto waits = static_cast<double>(m_scenario.waitTime.count());
    if (waits > 0) {
        return std::chrono::milliseconds(
            static_cast<long long>(static_cast<double>(step.duration.count()) * passTime / waits));
    }
    return std::chrono::milliseconds(makesCall(step) ? static_cast<long long>(1000.0 / m_options.rate) : 0);
}

}  // namespace host
