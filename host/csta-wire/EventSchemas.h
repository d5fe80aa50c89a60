#pragma once

#include <string_view>

namespace host {

/// The supported events of a monitored device.
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

/// The element names of an event, used by both ends of the link. Includes the misspelt names of the schema
/// ("TransferedEvent").
struct EventSchema {
    WireEvent event;
    std::string_view rootName;
    /// The member that contains the event's connection.
    std::string_view connection;
    /// The device member that is specific to this event.
    std::string_view device;
    /// Group and member of the monitor filter that suppresses the event.
    std::string_view filterGroup;
    std::string_view filterMember;
};

/// Returns `nullptr` for an unknown event.
[[nodiscard]] const EventSchema* findEventSchema(std::string_view rootName) noexcept;
[[nodiscard]] const EventSchema& eventSchema(WireEvent event) noexcept;

}  // namespace host
