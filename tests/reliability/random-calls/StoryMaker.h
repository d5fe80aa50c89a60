#pragma once

#include <functional>
#include <set>
#include <string>
#include <vector>

#include "tests/reliability/random-calls/SwitchModel.h"
#include "tests/reliability/support/Dice.h"

namespace reliability {

/// The phones and groups of an office.
struct Office {
    struct Group {
        Party party;
        /// Without the phone under test.
        std::vector<Party> colleagues;
        bool withOwn = false;
    };

    std::vector<Party> colleagues;
    std::vector<Group> groups;

    /// The phones 2001, 2006 and 2007, in the groups 2000 and 2100 as the dice decide. The phone under test
    /// is in at least one.
    static Office random(Dice& dice);
};

/// The kinds of stories and of steps in them, by name, that are left out.
using Exclusions = std::set<std::string>;

/// The circumstances of a story.
struct StorySettings {
    std::uint64_t seed = 0;
    /// The outside numbers of the story begin with these digits.
    std::string outsidePrefix;
    /// A colleague, a group or a withheld party may call or be called: they are the same in every story.
    bool inside = true;
    /// The switch sends `localConnectionInfo`.
    bool localState = true;
    std::function<std::string()> newCallId;
    Exclusions excluded;
};

/// Makes up one call: who calls whom, and what everyone does, until all have hung up.
class StoryMaker {
public:
    StoryMaker(const Office& office, StorySettings settings);

    [[nodiscard]] Story make();

private:
    // The first part of a call. Each of them goes on to `ringHere`, `dialled` or `talk`.
    void callHere();
    void callGroup();
    void forwardAtOnce();
    void dial();
    void pickUp();
    void askedByColleague();

    // While the phone rings.
    void ringHere(Call& call, Leg& leg, const Party& caller);
    void ringsOn(Call& call);
    void establishHere(Call& call, Leg& leg, const Party& caller);
    void giveUp(Call& call, Leg& leg, const Party& caller);
    void takenInGroup(Call& call, Leg& leg, const Party& caller);
    void pickedUp(Call& call, Leg& leg);
    void divertHere(Call& call, Leg& leg, const std::string& cause);
    void transferWhileRinging(Call& held, Call& call, Leg& leg, const Party& colleague);
    void othersStop(Call& call);

    // While the phone has dialled.
    void dialled(Call& call, Leg& leg, const Party& party);
    void dialGroup(Call& call, Leg& leg, const Office::Group& group);
    void forwardedThere(Call& call, Leg& leg, const Party& party);
    void busyThere(Call& call, Leg& leg, const Party& party);
    void leaveUnanswered(Call& call, Leg& leg, const Party& party);

    // While the phone talks.
    void talk(Call& call, Leg& leg, const Party& partner, bool transferable = true);
    void duringTalk(Call& call, const Party& partner);
    void holdAndRetrieve(Call& call, const Party& partner);
    void thirdParty(Call& call, const Party& partner);
    void hangUp(Call& call, Leg& leg, const Party& partner);
    void transferredByPartner(Call& call, Leg& leg, const Party& partner);
    void transferHere(Call& call, Leg& leg, const Party& partner);
    void conferenceHere(Call& call, Leg& leg, const Party& partner);
    void conferenceByPartner(Call& call, Leg& leg, const Party& partner);
    Call& consult(Leg*& leg, const Party& party);
    void leaveConference(Call& call, std::vector<std::pair<Leg*, Party>> members);

    [[nodiscard]] Party outside(bool mayBeWithheld = false);
    [[nodiscard]] Party anyParty();
    [[nodiscard]] Party partyOtherThan(const Party& than);
    [[nodiscard]] Party colleague() { return m_dice.pick(m_office.colleagues); }
    [[nodiscard]] std::string newCallId() const { return m_settings.newCallId(); }
    /// A choice among what is not excluded, or an empty text.
    [[nodiscard]] std::string choose(const std::vector<std::string>& names);
    [[nodiscard]] bool may(const std::string& name, std::size_t percent);
    [[nodiscard]] Party take(std::vector<Party>& parties);

    const Office& m_office;
    const StorySettings m_settings;
    Dice m_dice;
    int m_outsideParties = 0;
    SwitchModel m_switch;
    /// The other phones of the called group: those that may still ring, and those that ring.
    std::vector<Party> m_silent;
    std::vector<Party> m_ringing;
    std::vector<std::string> m_choices;
};

}  // namespace reliability
