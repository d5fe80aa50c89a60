#pragma once

#include <string_view>

namespace host {

/// The events of a monitored device that this host knows on the wire.
enum class WireEvent {
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
    eCallInformation,
    eNetworkReached,
    ePrivate,
    eCallBack,
};

/// How an event is written: the one place where both ends of the link look up the schema's names, misspelt ones
/// included ("TransferedEvent").
struct EventSchema {
    WireEvent event;
    std::string_view rootName;
    /// The member that holds the connection which the event is about.
    std::string_view connection;
    /// The member that holds the device which only this event has.
    std::string_view device;
    /// Group and member of the monitor filter that leaves the event out.
    std::string_view filterGroup;
    std::string_view filterMember;
};

/// Null for an event that is not known.
[[nodiscard]] const EventSchema* findEventSchema(std::string_view rootName) noexcept;
[[nodiscard]] const EventSchema& eventSchema(WireEvent event) noexcept;

}  // namespace host
