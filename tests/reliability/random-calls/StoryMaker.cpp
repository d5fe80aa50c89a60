#include "tests/reliability/random-calls/StoryMaker.h"

#include <algorithm>
#include <array>
#include <utility>

namespace reliability {

namespace {

constexpr std::array kFirstNames = {"Ann", "Bob", "Carl", "Dora", "Emil", "Frida", "Georg", "Hanna"};
constexpr std::array kSurnames = {"Abel", "Brandt", "Conrad", "Dietz", "Ernst", "Fuchs", "Graf"};

}  // namespace

Office Office::random(Dice& dice) {
    Office office{{{"2006", "Colleague Six"}, {"2007", "Colleague Seven"}}, {}};
    do {
        office.groups = {{{"2000", "Sales"}, {}, dice.chance(70)},
                         {{"2100", "Service"}, {}, dice.chance(50)}};
        for (Group& group : office.groups) {
            for (const Party& colleague : office.colleagues) {
                if (dice.chance(75)) {
                    group.colleagues.push_back(colleague);
                }
            }
        }
    } while (!office.groups[0].withOwn && !office.groups[1].withOwn);
    return office;
}

StoryMaker::StoryMaker(const Office& office, StorySettings settings)
    : m_office(office), m_settings(std::move(settings)), m_dice(m_settings.seed) {}

Story StoryMaker::make() {
    const std::string kind = choose({"call", "call", "group", "group", "forward-immediate", "dial", "dial",
                                     "dial-group", "pickup", "asked"});
    if (kind == "group") {
        callGroup();
    } else if (kind == "forward-immediate") {
        forwardAtOnce();
    } else if (kind == "dial" || (kind == "dial-group" && !m_settings.inside)) {
        dial();
    } else if (kind == "dial-group") {
        const Office::Group& group = m_dice.pick(m_office.groups);
        Leg& leg = m_switch.beginLeg(true, group.party, newCallId());
        dialGroup(m_switch.place(leg.callId, SwitchModel::own(), group.party), leg, group);
    } else if (kind == "pickup") {
        pickUp();
    } else if (kind == "asked" && m_settings.inside) {
        askedByColleague();
    } else {
        callHere();
    }
    Story story = m_switch.takeStory();
    story.choices = m_choices;
    return story;
}

void StoryMaker::callHere() {
    const Party caller = m_settings.inside && m_dice.chance(25) ? colleague() : outside(true);
    Leg& leg = m_switch.beginLeg(false, caller, newCallId());
    Call& call = m_switch.place(leg.callId, caller, SwitchModel::own());
    if (may("offered", 30)) {
        m_switch.offer(call, SwitchModel::own());
        // An offered call does not ring yet.
        leg.began = m_switch.now();
    }
    m_switch.ring(call, SwitchModel::own());
    ringHere(call, leg, caller);
}

void StoryMaker::callGroup() {
    std::vector<Office::Group> groups;
    std::copy_if(m_office.groups.begin(), m_office.groups.end(), std::back_inserter(groups),
                 [](const Office::Group& group) { return group.withOwn; });
    const Office::Group group = m_dice.pick(groups);
    const Party caller = outside(true);
    Leg& leg = m_switch.beginLeg(false, caller, newCallId());
    Call& call = m_switch.place(leg.callId, caller, group.party);
    m_silent = group.colleagues;
    m_dice.shuffle(m_silent);
    // Without the phone's own state, a phone that was never reported cannot be told from a withheld caller.
    const bool unreported = !caller.withheld || m_settings.localState;
    if (unreported && !m_silent.empty() && m_dice.chance(40)) {
        m_ringing.push_back(take(m_silent));
        SwitchModel::connectSilently(call, m_ringing.back(), "alerting");
    }
    m_switch.ring(call, SwitchModel::own());
    ringHere(call, leg, caller);
}

void StoryMaker::forwardAtOnce() {
    const Party caller = outside(true);
    Leg& leg = m_switch.beginLeg(false, caller, newCallId());
    Call& call = m_switch.place(leg.callId, caller, SwitchModel::own());
    call.watched = true;
    leg.rang = false;
    divertHere(call, leg, m_dice.chance(50) ? "callForwardImmediate" : "callForwardBusy");
}

void StoryMaker::pickUp() {
    const Party caller = outside();
    const Party rung = colleague();
    Leg& leg = m_switch.beginLeg(false, caller, newCallId());
    Call& call = m_switch.place(leg.callId, SwitchModel::own(), {"*8", {}});
    if (may("pickup-originated", 60)) {
        if (m_dice.chance(30)) {
            m_switch.initiate(call, SwitchModel::own());
        }
        m_switch.originate(call, m_dice.chance(70) ? "newCall" : "callPickup");
        m_switch.join();
        // In a gap the phone cannot tell an answered call from the dialled code.
        m_switch.keepLink();
    }
    call.calling = caller;
    call.called = rung;
    SwitchModel::connectSilently(call, caller);
    leg.established = m_switch.now();
    m_switch.establish(call, SwitchModel::own(), may("pickup-without-cause", 20) ? "newCall" : "callPickup");
    talk(call, leg, caller);
}

void StoryMaker::askedByColleague() {
    const Party caller = outside();
    const Party asking = colleague();
    Call& held = m_switch.place(newCallId(), caller, asking);
    SwitchModel::connectSilently(held, asking, "hold");
    Leg& leg = m_switch.beginLeg(false, asking, newCallId());
    Call& call = m_switch.place(leg.callId, asking, SwitchModel::own());
    m_switch.ring(call, SwitchModel::own(), m_dice.chance(50) ? "newCall" : "consultation");
    if (may("transfer-ringing", 50)) {
        transferWhileRinging(held, call, leg, asking);
    } else if (may("transfer-asked", 50)) {
        leg.established = m_switch.now();
        m_switch.establish(call, SwitchModel::own());
        m_switch.ended(leg);
        // The call with the caller is not this phone's call: it stays out of the journal.
        Call& joined = m_switch.transfer(held, &call, asking, SwitchModel::own(), newCallId());
        Leg rest = leg;
        hangUp(joined, rest, caller);
    } else {
        ringHere(call, leg, asking);
    }
}

Party StoryMaker::outside(bool mayBeWithheld) {
    Party party{m_settings.outsidePrefix + std::to_string(++m_outsideParties), {}};
    party.name = std::string(kFirstNames[m_dice.below(kFirstNames.size())]) + " " +
                 kSurnames[m_dice.below(kSurnames.size())];
    party.withheld = mayBeWithheld && m_settings.inside && may("withheld", 8);
    return party;
}

Party StoryMaker::anyParty() {
    return m_settings.inside && m_dice.chance(30) ? colleague() : outside();
}

Party StoryMaker::partyOtherThan(const Party& than) {
    const Party party = anyParty();
    return party == than ? outside() : party;
}

std::string StoryMaker::choose(const std::vector<std::string>& names) {
    std::vector<std::string> allowed;
    std::copy_if(names.begin(), names.end(), std::back_inserter(allowed),
                 [this](const std::string& name) { return !m_settings.excluded.contains(name); });
    if (allowed.empty()) {
        return {};
    }
    m_choices.push_back(m_dice.pick(allowed));
    return m_choices.back();
}

bool StoryMaker::may(const std::string& name, std::size_t percent) {
    if (!m_dice.chance(percent) || m_settings.excluded.contains(name)) {
        return false;
    }
    m_choices.push_back(name);
    return true;
}

Party StoryMaker::take(std::vector<Party>& parties) {
    const auto chosen = parties.begin() + static_cast<std::ptrdiff_t>(m_dice.below(parties.size()));
    Party party = *chosen;
    parties.erase(chosen);
    return party;
}

}  // namespace reliability
