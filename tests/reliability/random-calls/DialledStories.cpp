// The part of a story in which the phone has dialled and the called party has not answered yet.

#include "tests/reliability/random-calls/StoryMaker.h"

namespace reliability {

void StoryMaker::dial() {
    const Party party = anyParty();
    Leg& leg = m_switch.beginLeg(true, party, newCallId());
    Call& call = m_switch.place(leg.callId, SwitchModel::own(), party);
    if (may("initiated", 30)) {
        m_switch.initiate(call, SwitchModel::own());
        leg.began = m_switch.now();
    }
    m_switch.originate(call);
    dialled(call, leg, party);
}

void StoryMaker::dialled(Call& call, Leg& leg, const Party& party) {
    if (may("offered-there", 25)) {
        m_switch.offer(call, party);
    }
    const std::string how =
        choose({"reached", "reached", "reached", "busy-there", "unanswered", "forwarded-there"});
    if (how != "busy-there" && m_dice.chance(85)) {
        m_switch.ring(call, party);
    }
    if (how == "busy-there") {
        busyThere(call, leg, party);
    } else if (how == "forwarded-there") {
        forwardedThere(call, leg, party);
    } else if (how == "reached") {
        leg.established = m_switch.now();
        m_switch.establish(call, party);
        talk(call, leg, party);
    } else {
        leaveUnanswered(call, leg, party);
    }
}

void StoryMaker::busyThere(Call& call, Leg& leg, const Party& party) {
    m_switch.ended(leg);
    if (may("busy-state-fail", 50)) {
        SwitchModel::connectSilently(call, SwitchModel::own(), "fail");
    }
    m_switch.fail(call, party, m_dice.pick<std::string>({"busy", "destNotObtainable", "networkCongestion"}));
    m_switch.drop(call, SwitchModel::own(), SwitchModel::own());
}

void StoryMaker::leaveUnanswered(Call& call, Leg& leg, const Party& party) {
    const bool reached = call.stateOf(party) != "null";
    m_switch.ended(leg);
    if (reached && may("declined-there", 25)) {
        m_switch.drop(call, party, party);
        m_switch.drop(call, SwitchModel::own(), party);
        return;
    }
    m_switch.drop(call, SwitchModel::own(), SwitchModel::own());
    if (reached && m_dice.chance(40)) {
        call.watched = true;
        m_switch.drop(call, party, SwitchModel::own());
        call.watched = false;
    }
}

/// The far end forwards the call, and the new destination rings.
void StoryMaker::forwardedThere(Call& call, Leg& leg, const Party& party) {
    const Party to = outside();
    const std::string cause =
        m_dice.pick<std::string>({"callForwardNoAnswer", "callForwardBusy", "callForwardImmediate"});
    if (may("forwarded-there-diverted", 70)) {
        m_switch.divert(call, party, to, cause);
    } else {
        m_switch.removeSilently(call, party);
    }
    call.redirectedBy = party;
    m_switch.ring(call, to, cause);
    if (m_dice.chance(30)) {
        leaveUnanswered(call, leg, to);
        return;
    }
    leg.established = m_switch.now();
    m_switch.establish(call, to, m_dice.chance(50) ? "newCall" : cause);
    talk(call, leg, to);
}

void StoryMaker::dialGroup(Call& call, Leg& leg, const Office::Group& group) {
    m_switch.originate(call);
    if (may("queued-there", 25)) {
        m_switch.queue(call, group.party);
    }
    m_silent = group.colleagues;
    m_dice.shuffle(m_silent);
    for (std::size_t steps = m_dice.below(4); steps > 0; --steps) {
        ringsOn(call);
    }
    if (m_ringing.empty() || m_dice.chance(25)) {
        othersStop(call);
        leaveUnanswered(call, leg, group.party);
        return;
    }
    const Party member = take(m_ringing);
    leg.reached = member;
    leg.established = m_switch.now();
    m_switch.establish(call, member);
    if (m_dice.chance(60)) {
        othersStop(call);
    }
    talk(call, leg, member);
}

}  // namespace reliability
