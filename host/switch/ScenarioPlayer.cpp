#include "host/switch/ScenarioPlayer.h"

#include <system_error>
#include <utility>

#include "host/csta-wire/DeviceText.h"

namespace host {

namespace {

// Between two passes of a scenario that has no time of its own.
constexpr std::chrono::milliseconds kPassPause{100};

}  // namespace

ScenarioPlayer::ScenarioPlayer(asio::io_context& io, Scenario scenario, PlayOptions options,
                               const std::string& device, Stage stage)
    : m_scenario(std::move(scenario)),
      m_options(std::move(options)),
      m_device(m_scenario.device().empty() ? device : m_scenario.device()),
      m_stage(std::move(stage)),
      m_timer(io) {}

void ScenarioPlayer::start(bool monitored) {
    if (monitored || !m_options.awaitMonitor) {
        m_started = true;
        pauseFor(std::chrono::milliseconds(0));
    }
}

void ScenarioPlayer::monitorStarted(const std::string& device) {
    if (!m_started && !m_stopped && comparableNumber(device) == comparableNumber(m_device)) {
        start(true);
    }
}

void ScenarioPlayer::stop() {
    m_stopped = true;
    m_timer.cancel();
}

void ScenarioPlayer::play() {
    for (std::size_t done = 0; done < kStepsAtOnce; ++done) {
        if (m_next == m_scenario.steps().size()) {
            endPass();
            return;
        }
        const ScenarioStep& step = m_scenario.steps()[m_next++];
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
            play();
        }
    });
}

void ScenarioPlayer::perform(const ScenarioStep& step) {
    using Action = ScenarioStep::Action;
    switch (step.action) {
        case Action::eWait: return;
        case Action::eStatus: m_stage.status(step.word); return;
        case Action::eCall:
        case Action::eDial: makeCall(step); return;
        default: break;
    }
    if (const auto call = m_calls.find(step.call); call != m_calls.end()) {
        perform(step, call->second);
    }
}

void ScenarioPlayer::perform(const ScenarioStep& step, SimulatedCall& call) {
    using Action = ScenarioStep::Action;
    using Side = SimulatedCall::Side;
    switch (step.action) {
        case Action::eRing: show(call.ring()); break;
        case Action::eAnswer:
            if (!call.isRinging()) {
                show(call.ring());
            }
            show(call.answer());
            break;
        case Action::eHold: show(call.hold(sideOf(step, call))); break;
        case Action::eRetrieve: show(call.retrieve(sideOf(step, call))); break;
        case Action::eHangUp: show(call.hangUp(sideOf(step, call), "normalClearing")); break;
        case Action::eGiveUp: show(call.hangUp(Side::eCaller, "normalClearing")); break;
        case Action::eBusy: show(call.busy()); break;
        case Action::eNoAnswer:
            if (!call.isRinging()) {
                show(call.ring());
            }
            show(call.hangUp(Side::eCaller, "normalClearing"));
            break;
        case Action::eDivert: show(call.divert(step.to, step.word)); break;
        case Action::eElsewhere: show(call.answerElsewhere()); break;
        default: break;
    }
}

void ScenarioPlayer::makeCall(const ScenarioStep& step) {
    const bool byHand = step.action == ScenarioStep::Action::eDial;
    SimulatedCall call(m_stage.newCallId(), orPhone(step.from), orPhone(step.to), step.redirectedFrom,
                       step.word);
    const SimulatedCall::Occurrences heard = call.originate(byHand);
    m_calls.erase(step.call);
    m_calls.emplace(step.call, std::move(call));
    show(heard);
}

/// What is still up when the scenario begins again is hung up, so that it finds a quiet phone. At the very end calls stay
/// as they are.
void ScenarioPlayer::endPass() {
    if (!m_options.loop) {
        m_stopped = true;
        m_stage.finished();
        return;
    }
    for (auto& [name, call] : m_calls) {
        show(call.hangUp(SimulatedCall::Side::eCaller, "normalClearing"));
    }
    m_calls.clear();
    m_next = 0;
    pauseFor(m_scenario.waitTime().count() > 0 || m_options.rate > 0 ? std::chrono::milliseconds(0)
                                                                     : kPassPause);
}

void ScenarioPlayer::show(const SimulatedCall::Occurrences& occurrences) const {
    for (const CallOccurrence& occurrence : occurrences) {
        m_stage.happens(occurrence);
    }
}

/// Without a word it is the scenario's phone that acts.
SimulatedCall::Side ScenarioPlayer::sideOf(const ScenarioStep& step, const SimulatedCall& call) const {
    using Side = SimulatedCall::Side;
    if (!step.party.empty()) {
        return step.party == "caller" ? Side::eCaller : Side::eCalled;
    }
    return call.party(Side::eCalled).number == m_device ? Side::eCalled : Side::eCaller;
}

Party ScenarioPlayer::orPhone(const Party& party) const {
    return party.number.empty() && !party.anonymous ? Party{m_device, party.name, false} : party;
}

/// How long to wait after the step. With a rate the waits are scaled so that a pass makes its calls in the time that
/// the rate gives it; a scenario without waits gets the pauses after its calls.
std::chrono::milliseconds ScenarioPlayer::paced(const ScenarioStep& step) const {
    if (m_options.rate <= 0 || m_scenario.callCount() == 0) {
        return step.duration;
    }
    const double passTime = 1000.0 * static_cast<double>(m_scenario.callCount()) / m_options.rate;
    const auto waits = static_cast<double>(m_scenario.waitTime().count());
    if (waits > 0) {
        return std::chrono::milliseconds(
            static_cast<long long>(static_cast<double>(step.duration.count()) * passTime / waits));
    }
    const bool begins =
        step.action == ScenarioStep::Action::eCall || step.action == ScenarioStep::Action::eDial;
    return std::chrono::milliseconds(begins ? static_cast<long long>(1000.0 / m_options.rate) : 0);
}

}  // namespace host
