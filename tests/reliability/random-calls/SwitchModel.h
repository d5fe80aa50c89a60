#pragma once

#include <cstddef>
#include <list>
#include <optional>
#include <string>
#include <vector>

#include "tests/reliability/random-calls/CallEvent.h"

namespace reliability {

/// A call in the switch.
struct Call {
    struct Connection {
        Party party;
        /// As in `localConnectionInfo`, but never "null": such a connection is gone.
        std::string state;
    };

    std::string id;
    Party calling;
    Party called;
    Party redirectedBy;
    std::vector<Connection> connections;
    /// The phone's monitor gets the events of the call.
    bool watched = false;

    /// The state of that party's connection, "null" if it has none.
    [[nodiscard]] std::string stateOf(const Party& party) const;
};

/// One call from the view of the phone's user: from its first ring, or from the dialling, to its end. A
/// transfer to another partner begins a new leg. The steps are indices into `Story::steps`.
struct Leg {
    enum class End {
        eReleased,   ///< either side hung up
        eElsewhere,  ///< another phone took the call
        eDiverted,   ///< this phone sent the call on to another one before it was answered
        eUntracked,  ///< the leg is the rest of a call that this phone's user no longer takes for his own
    };

    bool outgoing = false;
    /// The caller, or the party called: the digits dialled.
    Party party;
    /// The phone of the called group that answered; else empty.
    Party reached;
    /// The partner before the transfer that began this leg, and the party of the leg before.
    Party transferredBy;
    Party firstParty;
    /// The phone rang, or dialled.
    bool rang = true;
    std::string callId;
    std::size_t began = 0;
    std::optional<std::size_t> established;
    std::optional<std::size_t> ended;
    End end = End::eReleased;
    /// The step from which another story with the same call id follows.
    std::optional<std::size_t> storyEnd;
};

struct Step {
    CallEvent event;
    /// The switch sends the next event at once.
    bool joined = false;
    /// The calls at the phone after the event.
    std::vector<Call> calls;
};

/// One call, as the phone's monitor sees it, and what it means for the phone's user.
struct Story {
    std::vector<Step> steps;
    std::vector<Leg> legs;
    /// The names of the decisions that were made.
    std::vector<std::string> choices;
    /// The link may be lost in it: no call changes its id or its kind.
    bool plain = true;

    /// Adds a story that happens afterwards.
    void append(const Story& next);
};

/// A switch that plays one call and the calls that come from it. Each operation changes the connections and
/// appends the event to the story, if the phone's monitor sees it.
class SwitchModel {
public:
    static const Party& own();

    /// A call that the phone's monitor does not see yet. The reference stays valid.
    Call& place(std::string id, const Party& calling, const Party& called);

    void initiate(Call& call, const Party& party);
    void originate(Call& call, const std::string& cause = "newCall");
    void offer(Call& call, const Party& party);
    void queue(Call& call, const Party& group);
    void ring(Call& call, const Party& party, const std::string& cause = "newCall");
    void establish(Call& call, const Party& party, const std::string& cause = "newCall");
    /// Tells an answered call again, with the roles of the parties turned.
    void establishTurned(Call& call, const Party& answering, const Party& calling);
    void fail(Call& call, const Party& party, const std::string& cause = "busy");
    void hold(Call& call, const Party& party, const std::string& cause = "normal");
    void retrieve(Call& call, const Party& party);
    void divert(Call& call, const Party& from, const Party& to, const std::string& cause);
    void drop(Call& call, const Party& party, const Party& releasing,
              const std::string& cause = "normalClearing");
    /// The connection ends without an event of its own.
    void removeSilently(Call& call, const Party& party);
    /// The party gets a connection without an event that the phone sees.
    static void connectSilently(Call& call, const Party& party, const std::string& state = "connected");

    /// `by` leaves; the others of both calls are in the new one. Without a secondary call `to` has none yet.
    Call& transfer(Call& primary, Call* secondary, const Party& by, const Party& to,
                   const std::string& newCallId);
    Call& conference(Call& primary, Call& secondary, const Party& by, const Party& added,
                     const std::string& newCallId);

    /// The next event follows the last one at once.
    void join();
    /// The link is not lost in the story.
    void keepLink() { m_story.plain = false; }

    Leg& beginLeg(bool outgoing, const Party& party, const std::string& callId);
    void ended(Leg& leg, Leg::End end = Leg::End::eReleased) const;
    /// The index of the next step.
    [[nodiscard]] std::size_t now() const { return m_story.steps.size(); }

    /// Requires: no reference to a leg is used afterwards.
    [[nodiscard]] Story takeStory();

private:
    CallEvent eventOf(EventKind kind, const Call& call, const Party& subject, const std::string& cause) const;
    Call& joinCalls(CallEvent event, Call& primary, Call* secondary);
    void show(const Call& call, CallEvent event);

    std::list<Call> m_calls;
    std::list<Leg> m_legs;
    Story m_story;
};

}  // namespace reliability
