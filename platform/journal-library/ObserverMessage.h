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

/// One message to a remote observer: one callback of the observer interface. A plain value.
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
    /// Count events only.
    unsigned count = 0;
    /// List events only: the `ActionType`, and the id that the callback carried.
    int action = 0;
    std::string entryId;
    /// The item of a list event; a default item with an empty entry id for an event without one.
    Item item;
};

/// The callback's name, which is also the event's name in the message: "missedCallsUpdate".
[[nodiscard]] const char* nameOf(ObserverMessage::Event event) noexcept;

/// Reads one message; `std::nullopt` if the text is not one. Pure; any thread may call; it never throws.
[[nodiscard]] std::optional<ObserverMessage> parseObserverMessage(const std::string& message);

}  // namespace journalxml
