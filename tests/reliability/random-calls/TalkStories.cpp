// The part of a story in which the phone talks.

#include <algorithm>
#include <utility>

#include "tests/reliability/random-calls/StoryMaker.h"

namespace reliability {

void StoryMaker::talk(Call& call, Leg& leg, const Party& partner, bool transferable) {
    for (std::size_t steps = m_dice.below(4); steps > 0; --steps) {
        duringTalk(call, partner);
    }
    othersStop(call);
    std::vector<std::string> ends = {"hang-up"};
    if (transferable) {
        ends.insert(ends.end(), {"hang-up", "hang-up", "transferred-blind", "transferred", "transfer-here"});
    }
    // The phone is in one conference at a time.
    if (transferable && m_settings.inside) {
        ends.insert(ends.end(), {"conference", "conference", "conference-there", "conference-there"});
    }
    const std::string end = choose(ends);
    if (end == "transferred-blind" || end == "transferred") {
        transferredByPartner(call, leg, partner);
    } else if (end == "transfer-here") {
        transferHere(call, leg, partner);
    } else if (end == "conference") {
        conferenceHere(call, leg, partner);
    } else if (end == "conference-there") {
        conferenceByPartner(call, leg, partner);
    } else {
        hangUp(call, leg, partner);
    }
}

void StoryMaker::duringTalk(Call& call, const Party& partner) {
    const std::string what = choose({"hold", "hold", "third-party", "others-stop-late"});
    if (what == "hold") {
        holdAndRetrieve(call, partner);
    } else if (what == "third-party") {
        thirdParty(call, partner);
    } else if (what == "others-stop-late") {
        othersStop(call);
    }
}

void StoryMaker::holdAndRetrieve(Call& call, const Party& partner) {
    if (may("hold-there", 40)) {
        m_switch.hold(call, partner);
        m_switch.retrieve(call, partner);
        return;
    }
    m_switch.hold(call, SwitchModel::own(), m_dice.chance(50) ? "normal" : "keyOperation");
    if (may("retrieved-as-established", 25)) {
        m_switch.establishTurned(call, partner, SwitchModel::own());
    } else {
        m_switch.retrieve(call, SwitchModel::own());
    }
}

/// A third party is added, and does not stay.
void StoryMaker::thirdParty(Call& call, const Party& /*partner*/) {
    const Party third = outside();
    if (may("third-offered", 20)) {
        m_switch.offer(call, third);
    }
    const std::string how = choose({"third-busy", "third-leaves", "third-rings-only"});
    if (how == "third-busy") {
        m_switch.fail(call, third);
        return;
    }
    if (how.empty()) {
        return;
    }
    m_switch.ring(call, third);
    if (how == "third-leaves") {
        m_switch.establish(call, third);
    }
    m_switch.drop(call, third, third);
}

void StoryMaker::hangUp(Call& call, Leg& leg, const Party& partner) {
    const Party own = SwitchModel::own();
    m_switch.ended(leg);
    const std::string how = choose({"hang-up-own", "hang-up-own-both", "hang-up-partner",
                                    "hang-up-partner-both", "hang-up-partner-first"});
    if (how == "hang-up-partner-first") {
        m_switch.drop(call, partner, partner);
        m_switch.drop(call, own, partner);
        return;
    }
    if (how == "hang-up-partner" || how == "hang-up-partner-both") {
        m_switch.removeSilently(call, own);
        m_switch.drop(call, partner, partner);
    }
    if (how != "hang-up-partner") {
        m_switch.drop(call, own, m_dice.chance(50) ? own : partner);
    }
    if (how == "hang-up-own-both") {
        call.watched = true;
        m_switch.drop(call, partner, own);
    }
    call.watched = false;
}

void StoryMaker::transferredByPartner(Call& call, Leg& leg, const Party& partner) {
    const Party to = outside();
    const bool blind = may("transferred-blind", 50);
    if (may("hold-there", 60)) {
        m_switch.hold(call, partner, blind ? "singleStepTransfer" : "consultation");
    }
    m_switch.ended(leg);
    Leg& next = m_switch.beginLeg(leg.outgoing, to, newCallId());
    next.transferredBy = partner;
    next.firstParty = leg.party;
    next.established = m_switch.now();
    const bool ringing = blind || may("transferred-ringing", 40);
    Call* other = nullptr;
    if (!blind) {
        other = &m_switch.place(newCallId(), partner, to);
        SwitchModel::connectSilently(*other, to, ringing ? "alerting" : "connected");
    }
    Call& joined = m_switch.transfer(call, other, partner, to, next.callId);
    joined.calling = m_dice.chance(50) ? SwitchModel::own() : partner;
    joined.called = to;
    if (blind && may("transferred-rings", 60)) {
        m_switch.ring(joined, to, "singleStepTransfer");
    }
    if (ringing && may("transferred-established", 80)) {
        m_switch.establish(joined, to);
    } else {
        SwitchModel::connectSilently(joined, to);
    }
    talk(joined, next, to, false);
}

/// The phone dials a second call while the first one is held.
Call& StoryMaker::consult(Leg*& leg, const Party& party) {
    leg = &m_switch.beginLeg(true, party, newCallId());
    Call& call = m_switch.place(leg->callId, SwitchModel::own(), party);
    m_switch.originate(call);
    m_switch.ring(call, party);
    return call;
}

void StoryMaker::transferHere(Call& call, Leg& leg, const Party& partner) {
    const Party own = SwitchModel::own();
    const Party to = partyOtherThan(partner);
    if (may("transfer-here-blind", 50)) {
        const bool reported = m_dice.chance(60);
        if (reported) {
            m_switch.hold(call, own, "singleStepTransfer");
            m_switch.join();
        }
        m_switch.ended(leg);
        if (reported) {
            m_switch.drop(call, own, own, "normalClearing");
            m_switch.join();
            call.watched = true;
        }
        m_switch.transfer(call, nullptr, own, to, newCallId());
        return;
    }
    m_switch.hold(call, own, "consultation");
    Leg* second = nullptr;
    Call& other = consult(second, to);
    if (may("transfer-here-late", 70)) {
        second->established = m_switch.now();
        m_switch.establish(other, to);
    }
    m_switch.ended(leg);
    m_switch.ended(*second);
    m_switch.transfer(call, &other, own, to, newCallId());
}

void StoryMaker::conferenceHere(Call& call, Leg& leg, const Party& partner) {
    const Party to = partyOtherThan(partner);
    m_switch.hold(call, SwitchModel::own(), "conference");
    Leg* second = nullptr;
    Call& other = consult(second, to);
    second->established = m_switch.now();
    m_switch.establish(other, to);
    const std::string id = may("conference-keeps-id", 30) ? call.id : newCallId();
    leaveConference(m_switch.conference(call, other, SwitchModel::own(), to, id),
                    {{&leg, partner}, {second, to}});
}

void StoryMaker::conferenceByPartner(Call& call, Leg& leg, const Party& partner) {
    const Party added = outside();
    Call& other = m_switch.place(newCallId(), partner, added);
    SwitchModel::connectSilently(other, added);
    const std::string id = may("conference-keeps-id", 30) ? call.id : newCallId();
    leaveConference(m_switch.conference(call, other, partner, added, id),
                    {{&leg, partner}, {nullptr, added}});
}

/// The members leave one after the other, until two are left and hang up, or until the phone leaves.
void StoryMaker::leaveConference(Call& call, std::vector<std::pair<Leg*, Party>> members) {
    const Party own = SwitchModel::own();
    m_dice.shuffle(members);
    if (m_dice.chance(60)) {
        if (members.front().first != nullptr) {
            m_switch.ended(*members.front().first);
        }
        m_switch.drop(call, members.front().second, members.front().second);
        members.erase(members.begin());
    }
    for (auto& [leg, party] : members) {
        if (leg != nullptr) {
            m_switch.ended(*leg);
        }
    }
    if (members.size() == 1 && m_dice.chance(50)) {
        m_switch.drop(call, members.front().second, members.front().second);
    }
    m_switch.drop(call, own, own);
}

}  // namespace reliability
