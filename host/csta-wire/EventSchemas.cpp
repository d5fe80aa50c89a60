#include "host/csta-wire/EventSchemas.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace host {

namespace {

// In the order of the enumeration.
constexpr std::array kSchemas = {
    EventSchema{WireEvent::eServiceInitiated, "ServiceInitiatedEvent", "initiatedConnection",
                "initiatingDevice", "callcontrol", "serviceInitiated"},
    EventSchema{WireEvent::eOriginated, "OriginatedEvent", "originatedConnection", "originatingDevice",
                "callcontrol", "originated"},
    EventSchema{WireEvent::eOffered, "OfferedEvent", "offeredConnection", "offeredDevice", "callcontrol",
                "offered"},
    EventSchema{WireEvent::eQueued, "QueuedEvent", "queuedConnection", "queue", "callcontrol", "queued"},
    EventSchema{WireEvent::eDelivered, "DeliveredEvent", "connection", "alertingDevice", "callcontrol",
                "delivered"},
    EventSchema{WireEvent::eDiverted, "DivertedEvent", "connection", "divertingDevice", "callcontrol",
                "diverted"},
    EventSchema{WireEvent::eEstablished, "EstablishedEvent", "establishedConnection", "answeringDevice",
                "callcontrol", "established"},
    EventSchema{WireEvent::eHeld, "HeldEvent", "heldConnection", "holdingDevice", "callcontrol", "held"},
    EventSchema{WireEvent::eRetrieved, "RetrievedEvent", "retrievedConnection", "retrievingDevice",
                "callcontrol", "retrieved"},
    EventSchema{WireEvent::eFailed, "FailedEvent", "failedConnection", "failingDevice", "callcontrol",
                "failed"},
    EventSchema{WireEvent::eConnectionCleared, "ConnectionClearedEvent", "droppedConnection",
                "releasingDevice", "callcontrol", "connectionCleared"},
    EventSchema{WireEvent::eTransferred, "TransferedEvent", "primaryOldCall", "transferringDevice",
                "callcontrol", "transferred"},
    EventSchema{WireEvent::eConferenced, "ConferencedEvent", "primaryOldCall", "conferencingDevice",
                "callcontrol", "conferenced"},
    EventSchema{WireEvent::eCallInformation, "CallInformationEvent", "connection", "device", "callAssociated",
                "callInformation"},
    EventSchema{WireEvent::eNetworkReached, "NetworkReachedEvent", "outboundConnection",
                "networkInterfaceUsed", "callcontrol", "networkReached"},
    EventSchema{WireEvent::ePrivate, "PrivateEvent", "", "", "private", "private"},
    EventSchema{WireEvent::eCallBack, "CallBackEvent", "", "originatingDevice", "logicalDeviceFeature",
                "callBack"},
};

}  // namespace

const EventSchema* findEventSchema(std::string_view rootName) noexcept {
    // Some peers spell the transfer event like its members.
    const std::string_view name =
        rootName == "TransferredEvent" ? std::string_view("TransferedEvent") : rootName;
    const auto* const found =
        std::find_if(kSchemas.begin(), kSchemas.end(),
                     [name](const EventSchema& schema) { return schema.rootName == name; });
    return found == kSchemas.end() ? nullptr : found;
}

const EventSchema& eventSchema(WireEvent event) noexcept {
    return kSchemas[static_cast<std::size_t>(event)];
}

}  // namespace host
