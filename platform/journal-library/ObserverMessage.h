#pragma once

#include <optional>
#include <string>
#include <variant>

#include "journal-items/CallBackItem.h"
#include "journal-items/DialledCallItem.h"
#include "journal-items/ForwardedCallItem.h"
#include "journal-items/MissedCallItem.h"
#include "journal-items/ReceivedCallItem.h"

namespace journalxml {

/// What a remote observer is told, one for each callback of the observer interface. A plain value.
struct ObserverMessage {
    enum class Event {
        eMissedCallsCountUpdate,
        eMissedCallsUpdate,
        eDialledCallsUpdate,
        eReceivedCallsUpdate,
        eForwardedCallsUpdate,
        eCallBacksUpdate,
        eCallBacksCountUpdate
    };
    using Item = std::variant<std::monostate, MissedCallItem, DialledCallItem, ReceivedCallItem,
                              ForwardedCallItem, CallBackItem>;

    Event event = Event::eMissedCallsCountUpdate;
    /// The two count events only.
    unsigned count = 0;
    /// The five list events only: what happened (`ActionType`), and the id that the callback carried.
    int action = 0;
    std::string entryId;
    /// The item of a list event; for an event without an item it is a default one, with an empty entry id.
    Item item;
};

/// The callback's name, which is also the event's word in the message: "missedCallsUpdate".
[[nodiscard]] const char* nameOf(ObserverMessage::Event event) noexcept;

/// Reads one message; nothing when the text is not one. Pure; any thread may call; nothing throws.
[[nodiscard]] std::optional<ObserverMessage> parseObserverMessage(const std::string& message);

}  // namespace journalxml
