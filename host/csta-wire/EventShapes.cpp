#include "host/csta-wire/EventShapes.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace host {

namespace {

// In the order of the enumeration.
constexpr std::array kShapes = {
    EventShape{WireEvent::eServiceInitiated, "ServiceInitiatedEvent", "initiatedConnection",
               "initiatingDevice", "callcontrol", "serviceInitiated"},
    EventShape{WireEvent::eOriginated, "OriginatedEvent", "originatedConnection", "originatingDevice",
               "callcontrol", "originated"},
    EventShape{WireEvent::eOffered, "OfferedEvent", "offeredConnection", "offeredDevice", "callcontrol",
               "offered"},
    EventShape{WireEvent::eQueued, "QueuedEvent", "queuedConnection", "queue", "callcontrol", "queued"},
    EventShape{WireEvent::eDelivered, "DeliveredEvent", "connection", "alertingDevice", "callcontrol",
               "delivered"},
    EventShape{WireEvent::eDiverted, "DivertedEvent", "connection", "divertingDevice", "callcontrol",
               "diverted"},
    EventShape{WireEvent::eEstablished, "EstablishedEvent", "establishedConnection", "answeringDevice",
               "callcontrol", "established"},
    EventShape{WireEvent::eHeld, "HeldEvent", "heldConnection", "holdingDevice", "callcontrol", "held"},
    EventShape{WireEvent::eRetrieved, "RetrievedEvent", "retrievedConnection", "retrievingDevice",
               "callcontrol", "retrieved"},
    EventShape{WireEvent::eFailed, "FailedEvent", "failedConnection", "failingDevice", "callcontrol",
               "failed"},
    EventShape{WireEvent::eConnectionCleared, "ConnectionClearedEvent", "droppedConnection",
               "releasingDevice", "callcontrol", "connectionCleared"},
    EventShape{WireEvent::eTransferred, "TransferedEvent", "primaryOldCall", "transferringDevice",
               "callcontrol", "transferred"},
    EventShape{WireEvent::eConferenced, "ConferencedEvent", "primaryOldCall", "conferencingDevice",
               "callcontrol", "conferenced"},
    EventShape{WireEvent::eCallInformation, "CallInformationEvent", "connection", "device", "callAssociated",
               "callInformation"},
    EventShape{WireEvent::eNetworkReached, "NetworkReachedEvent", "outboundConnection",
               "networkInterfaceUsed", "callcontrol", "networkReached"},
    EventShape{WireEvent::ePrivate, "PrivateEvent", "", "", "private", "private"},
    EventShape{WireEvent::eCallBack, "CallBackEvent", "", "originatingDevice", "logicalDeviceFeature",
               "callBack"},
};

}  // namespace

const EventShape* findEventShape(std::string_view rootName) noexcept {
    // Some peers spell the transfer event as its members are spelt.
    const std::string_view name =
        rootName == "TransferredEvent" ? std::string_view("TransferedEvent") : rootName;
    const auto* const found = std::find_if(
        kShapes.begin(), kShapes.end(), [name](const EventShape& shape) { return shape.rootName == name; });
    return found == kShapes.end() ? nullptr : found;
}

const EventShape& eventShape(WireEvent event) noexcept {
    return kShapes[static_cast<std::size_t>(event)];
}

}  // namespace host
