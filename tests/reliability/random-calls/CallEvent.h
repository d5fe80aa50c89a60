#pragma once

#include <string>
#include <vector>

namespace reliability {

/// A device that takes part in a call.
struct Party {
    std::string number;
    std::string name;
    /// The switch sends no number and no name.
    bool withheld = false;

    [[nodiscard]] bool operator==(const Party& other) const { return number == other.number; }
};

/// The phone under test.
inline constexpr const char* kOwnNumber = "2001";

enum class EventKind {
    eServiceInitiated,
    eOriginated,
    eOffered,
    eQueued,
    eDelivered,
    eDiverted,
    eEstablished,
    eHeld,
    eRetrieved,
    eFailed,
    eConnectionCleared,
    eTransferred,
    eConferenced,
};

/// One event as a monitor of the phone sees it. The kind determines which members are used.
struct CallEvent {
    /// A party of the call that a transfer or a conference creates, and its previous call, if any.
    struct Connection {
        Party party;
        std::string oldCallId;
    };

    EventKind kind = EventKind::eOriginated;
    /// For a transfer and a conference: the primary old call.
    std::string callId;
    /// The party of the event's connection, and the device that is specific to the event. They differ for a
    /// cleared connection only: the dropped and the releasing party.
    Party subject;
    Party device;
    Party calling;
    Party called;
    /// Empty: the call was not redirected.
    Party redirectedBy;
    /// The new destination, the party transferred to, or the added party.
    Party to;
    std::string cause;
    /// The state of the phone's own connection after the event.
    std::string local;

    std::string secondaryCallId;
    std::string newCallId;
    std::vector<Connection> connections;
};

/// The event as a text line of a report:
/// "Delivered(7: 2001, calling 4711 Ann, called 2000; alerting, newCall)".
[[nodiscard]] std::string describe(const CallEvent& event);

/// The form in which the switch writes events.
struct Dialect {
    /// With `localConnectionInfo`.
    bool localState = true;
    /// "N<number>name" instead of plain numbers.
    bool names = true;
};

/// The text of the party's device id.
[[nodiscard]] std::string deviceText(const Party& party, const Dialect& dialect);

/// The event as CSTA XML for the monitor `crossRefId`.
[[nodiscard]] std::string writeEvent(const CallEvent& event, const Dialect& dialect,
                                     const std::string& crossRefId);

}  // namespace reliability
