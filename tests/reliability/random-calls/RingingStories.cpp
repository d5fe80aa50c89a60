// The part of a story in which the phone rings.

#include <algorithm>

#include "tests/reliability/random-calls/StoryMaker.h"

namespace reliability {

void StoryMaker::ringHere(Call& call, Leg& leg, const Party& caller) {
    const bool group = !(call.called == SwitchModel::own());
    for (std::size_t steps = group ? m_dice.below(4) : 0; steps > 0; --steps) {
        ringsOn(call);
    }
    const std::string end =
        choose(group ? std::vector<std::string>{"answer", "give-up", "taken", "taken", "picked-up"}
                     : std::vector<std::string>{"answer", "answer", "give-up", "divert", "picked-up"});
    if (end == "answer") {
        establishHere(call, leg, caller);
    } else if (end == "taken" && !m_ringing.empty()) {
        takenInGroup(call, leg, caller);
    } else if (end == "picked-up") {
        pickedUp(call, leg);
    } else if (end == "divert") {
        divertHere(call, leg, m_dice.pick<std::string>({"callForwardNoAnswer", "callForward", "redirected"}));
    } else {
        giveUp(call, leg, caller);
    }
}

/// Something happens to the other phones of the group, while this one rings on.
void StoryMaker::ringsOn(Call& call) {
    const std::string what =
        choose({"member-rings", "member-rings", "member-busy", "member-diverts", "member-declines"});
    if (what == "member-rings" && !m_silent.empty()) {
        m_ringing.push_back(take(m_silent));
        m_switch.ring(call, m_ringing.back());
    } else if (what == "member-busy" && !m_silent.empty()) {
        m_switch.fail(call, take(m_silent));
    } else if (what == "member-diverts" && !m_ringing.empty()) {
        const Party to = outside();
        m_switch.divert(call, take(m_ringing), to,
                        m_dice.pick<std::string>({"callForwardNoAnswer", "callForward", "redirected"}));
        if (m_dice.chance(50)) {
            m_switch.ring(call, to, "callForwardNoAnswer");
            m_ringing.push_back(to);
        }
    } else if (what == "member-declines" && !m_ringing.empty()) {
        const Party member = take(m_ringing);
        m_switch.drop(call, member, member);
    }
}

void StoryMaker::establishHere(Call& call, Leg& leg, const Party& caller) {
    const bool first = may("others-stop-first", 25);
    if (first) {
        othersStop(call);
    }
    leg.established = m_switch.now();
    m_switch.establish(call, SwitchModel::own());
    if (!first && m_dice.chance(50)) {
        othersStop(call);
    }
    talk(call, leg, caller);
}

/// The switch stops the ringing of the other phones, and may report it.
void StoryMaker::othersStop(Call& call) {
    while (!m_ringing.empty()) {
        const Party member = take(m_ringing);
        if (may("others-stop-reported", 70)) {
            m_switch.drop(call, member, member, m_dice.chance(70) ? "multipleAlerting" : "normalClearing");
        } else {
            m_switch.removeSilently(call, member);
        }
    }
}

void StoryMaker::giveUp(Call& call, Leg& leg, const Party& caller) {
    const std::string cause =
        m_dice.pick<std::string>({"normalClearing", "normal", "callCancelled", "networkSignal"});
    const std::string how = choose({"give-up-own", "give-up-caller", "give-up-caller-first", "give-up-both"});
    m_switch.ended(leg);
    if (how == "give-up-caller-first") {
        m_switch.drop(call, caller, caller, cause);
        othersStop(call);
        m_switch.drop(call, SwitchModel::own(), caller, cause);
        return;
    }
    if (m_dice.chance(50)) {
        othersStop(call);
    }
    if (how == "give-up-caller" || how == "give-up-both") {
        m_switch.removeSilently(call, SwitchModel::own());
        m_switch.drop(call, caller, caller, cause);
    }
    if (how != "give-up-caller") {
        m_switch.drop(call, SwitchModel::own(), caller, cause);
    }
    call.watched = false;
}

/// Another phone of the group answers.
void StoryMaker::takenInGroup(Call& call, Leg& leg, const Party& caller) {
    const Party colleague = take(m_ringing);
    const std::string how =
        choose({"taken-established", "taken-cleared-first", "taken-cleared-last", "taken-cleared"});
    if (m_dice.chance(40)) {
        othersStop(call);
    }
    m_switch.ended(leg, Leg::End::eElsewhere);
    if (how == "taken-cleared" || how == "taken-cleared-first") {
        m_switch.drop(call, SwitchModel::own(), SwitchModel::own(), "multipleAlerting");
    } else if (how != "taken-cleared-last") {
        m_switch.removeSilently(call, SwitchModel::own());
    }
    if (how != "taken-cleared") {
        call.watched = true;
        m_switch.establish(call, colleague);
    }
    if (how == "taken-cleared-last") {
        m_switch.drop(call, SwitchModel::own(), SwitchModel::own(), "multipleAlerting");
    }
    // A switch that does not tell the phone's own state sends at least the end of the talk.
    if (how == "taken-established" && (!m_settings.localState || may("taken-goes-on", 40))) {
        if (m_dice.chance(50)) {
            m_switch.drop(call, colleague, colleague);
        } else {
            m_switch.drop(call, caller, caller);
        }
    }
    call.watched = false;
}

/// A colleague takes the call with a code.
void StoryMaker::pickedUp(Call& call, Leg& leg) {
    const Party by = call.calling == m_office.colleagues.front() ? m_office.colleagues.back()
                                                                 : m_office.colleagues.front();
    if (call.stateOf(by) != "null") {
        m_switch.removeSilently(call, by);
    }
    m_ringing.erase(std::remove(m_ringing.begin(), m_ringing.end(), by), m_ringing.end());
    const std::string how = choose({"picked-up-diverted", "picked-up-cleared"});
    m_switch.ended(leg, Leg::End::eElsewhere);
    if (how == "picked-up-diverted") {
        m_switch.divert(call, SwitchModel::own(), by, "callPickup");
    } else {
        m_switch.drop(call, SwitchModel::own(), SwitchModel::own(), "callPickup");
    }
    if (may("picked-up-established", 40)) {
        call.watched = true;
        m_switch.establish(call, by, "callPickup");
    }
    call.watched = false;
}

void StoryMaker::divertHere(Call& call, Leg& leg, const std::string& cause) {
    const Party to = outside();
    m_switch.ended(leg, Leg::End::eDiverted);
    m_switch.divert(call, SwitchModel::own(), to, cause);
    if (may("divert-goes-on", 30)) {
        call.watched = true;
        m_switch.ring(call, to, cause);
    }
    call.watched = false;
}

/// The colleague who asks this phone connects it with the caller before it answers: for the user one call.
void StoryMaker::transferWhileRinging(Call& held, Call& call, Leg& leg, const Party& colleague) {
    const Party caller = held.calling;
    m_switch.ended(leg, Leg::End::eUntracked);
    Leg& next = m_switch.beginLeg(false, caller, newCallId());
    Call& joined = m_switch.transfer(held, &call, colleague, SwitchModel::own(), next.callId);
    joined.calling = caller;
    joined.called = SwitchModel::own();
    if (may("transfer-rings-again", 30)) {
        m_switch.ring(joined, SwitchModel::own(), "transfer");
    }
    ringHere(joined, next, caller);
}

}  // namespace reliability
