#include "tests/reliability/random-calls/ExpectedEntries.h"

#include <algorithm>
#include <vector>

namespace reliability {

namespace {

/// The name of a party that withholds its number.
constexpr const char* kWithheldName = "Withheld";

/// True if the leg's call is at the phone when the gap ends. A failed call is not: the phone does not take it
/// from a snapshot.
bool isStillUp(const Leg& leg, const Story& story, const Gap& gap) {
    const std::vector<Call>& calls = story.steps[gap.end - 1].calls;
    const bool over = leg.storyEnd && gap.end > *leg.storyEnd;
    return !over && std::any_of(calls.begin(), calls.end(), [&leg](const Call& call) {
        return call.id == leg.callId && call.stateOf(SwitchModel::own()) != "fail";
    });
}

/// The leg as the phone can know it if it misses the steps of the gap; std::nullopt if it cannot know it.
std::optional<Leg> asSeen(Leg leg, const Story& story, const Gap& gap) {
    const bool known = leg.began < gap.first;
    const bool stillUp = isStillUp(leg, story, gap);
    if (!known && !stillUp && leg.began < gap.end) {
        return std::nullopt;
    }
    if (known && !stillUp && leg.ended && *leg.ended >= gap.first && *leg.ended < gap.end) {
        // It is over: how it went on during the gap is not known.
        leg.end = Leg::End::eReleased;
        if (leg.established && *leg.established >= gap.first) {
            leg.established.reset();
        }
    }
    return leg;
}

/// True if that party rang, was connected or was busy: a SIP phone takes the name of the party called from
/// these events only.
bool isNamed(const Story& story, const std::string& callId, const Party& party) {
    return std::any_of(story.steps.begin(), story.steps.end(), [&](const Step& step) {
        const EventKind kind = step.event.kind;
        return step.event.callId == callId && step.event.subject == party &&
               (kind == EventKind::eDelivered || kind == EventKind::eEstablished ||
                kind == EventKind::eFailed);
    });
}

class Filing {
public:
    Filing(const Story& story, const PhoneType& phone, const Dialect& dialect, bool gap)
        : m_story(story), m_phone(phone), m_dialect(dialect), m_gap(gap) {}

    void file(const Leg& leg) {
        if (leg.end == Leg::End::eUntracked) {
            return;
        }
        if (leg.outgoing) {
            fileDialled(leg);
        } else if (leg.established) {
            fileReceived(leg);
        } else if (leg.end == Leg::End::eDiverted) {
            fileDiverted(leg);
        } else {
            add("missed", leg.party, leg.end == Leg::End::eElsewhere);
        }
    }

    [[nodiscard]] std::vector<ExpectedEntry> entries() && { return std::move(m_entries); }

private:
    void fileDialled(const Leg& leg) {
        add("dialled", leg.party);
        if (m_phone.sip && (m_gap || !isNamed(m_story, leg.callId, leg.party))) {
            m_entries.back().push_back(entryText("dialled", leg.party.number, {}, false));
        }
        // A SIP phone names the party that it reached in a group.
        if (m_phone.sip && !leg.reached.number.empty()) {
            m_entries.back().push_back(text("dialled", leg.reached, false));
        }
    }

    /// A SIP phone files the leg after a transfer under the caller, or under the partner if that is withheld.
    void fileReceived(const Leg& leg) {
        if (m_phone.sip && !leg.transferredBy.number.empty()) {
            add("received", leg.firstParty);
            if (leg.firstParty.withheld) {
                m_entries.back().push_back(text("received", leg.party, false));
            }
        } else {
            add("received", leg.party);
        }
    }

    /// A SIP phone files no call that leaves it while it rings: the destination files it.
    void fileDiverted(const Leg& leg) {
        if (m_phone.sip) {
            return;
        }
        if (m_phone.forwards) {
            add("forwarded", leg.party);
        } else if (leg.rang) {
            add("missed", leg.party);
        }
    }

    void add(const std::string& list, const Party& party, bool elsewhere = false) {
        m_entries.push_back({text(list, party, elsewhere)});
    }

    [[nodiscard]] std::string text(const std::string& list, const Party& party, bool elsewhere) const {
        if (party.withheld) {
            return entryText(list, {}, kWithheldName, elsewhere);
        }
        return entryText(list, party.number, m_dialect.names ? party.name : std::string(), elsewhere);
    }

    const Story& m_story;
    const PhoneType& m_phone;
    const Dialect& m_dialect;
    /// The events that name a party may be lost.
    const bool m_gap;
    std::vector<ExpectedEntry> m_entries;
};

}  // namespace

std::string PhoneType::text() const {
    return std::string(sip ? "Norlith SIP" : "Norlith Qorvex") +
           (forwards ? " with server-based features" : "");
}

std::string entryText(const std::string& list, const std::string& number, const std::string& name,
                      bool elsewhere) {
    return list + (number.empty() ? "" : " " + number) + (name.empty() ? "" : " " + name) +
           (elsewhere ? " elsewhere" : "");
}

bool matches(const std::vector<ExpectedEntry>& expected, const Entries& found) {
    Entries left = found;
    for (const ExpectedEntry& one : expected) {
        const auto isIn = [&one](const Entries& entries) {
            return std::find_if(one.begin(), one.end(),
                                [&entries](const std::string& text) { return entries.contains(text); });
        };
        if (isIn(found) == one.end()) {
            return false;
        }
        if (const auto entry = isIn(left); entry != one.end()) {
            left.erase(*entry);
        }
    }
    return left.empty();
}

std::vector<ExpectedEntry> expectedEntries(const Story& story, const PhoneType& phone, const Dialect& dialect,
                                           const std::optional<Gap>& gap) {
    Filing filing(story, phone, dialect, gap.has_value());
    for (const Leg& leg : story.legs) {
        if (const std::optional<Leg> seen = gap ? asSeen(leg, story, *gap) : leg) {
            filing.file(*seen);
        }
    }
    return std::move(filing).entries();
}

}  // namespace reliability
