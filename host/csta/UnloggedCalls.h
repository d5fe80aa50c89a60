#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/calls/DeliveryContext.h"
#include "host/calls/PhoneCall.h"
#include "host/calls/PhoneCallEvents.h"

namespace host {

/// Keeps calls with certain numbers from the journal, from their first event on:
///  - The journal gets no event of a call that has had such a party.
///  - A call that gets such a party later (a transfer, a conference, a diversion) ends there for the journal,
///    which files it with the parties that it had until then.
///  - Reports of the switch about such a number (its call log, callbacks, members of conferences) are
///    dropped.
///
/// Follows `PhoneCalls` as one of its listeners. Reader thread only. Without a predicate it has no effect.
class UnloggedCalls {
public:
    /// True for a number whose calls must not be kept.
    using IsUnlogged = std::function<bool(const std::string& number)>;

    explicit UnloggedCalls(IsUnlogged isUnlogged) : m_isUnlogged(std::move(isUnlogged)) {}

    enum class Kept { eYes, eNo };
    /// Call it for each call that begins or changes.
    [[nodiscard]] Kept changed(const PhoneCall& call);
    /// Call it for each call that ends; eNo if the journal knows of no call that it ends.
    [[nodiscard]] Kept ended(const PhoneCall& call);
    /// True if the journal knows the call, and has not been told of its end.
    [[nodiscard]] bool isKnown(const PhoneCall& call) const;
    /// Returns the events that the journal may get, in order. Adds the calls to `ended` that end by them
    /// earlier than at the switch. `device` is the one of the calls.
    [[nodiscard]] std::vector<PhoneEvent> filtered(const std::string& device, std::vector<PhoneEvent> events,
                                                   std::vector<PhoneCallKey>& ended);
    /// True if the journal does not get the event.
    [[nodiscard]] bool isDropped(const std::string& device, const CSTAEvent& event) const;

private:
    struct State {
        /// The call as the journal knows it; empty if it does not.
        std::optional<PhoneCall> known{};
        bool unlogged = false;
        bool over = false;
    };
    using Key = std::pair<std::string, std::string>;

    [[nodiscard]] bool hasUnloggedParty(const PhoneCall& call) const;
    [[nodiscard]] bool namesUnlogged(const CSTAEvent& event) const;

    const IsUnlogged m_isUnlogged;
    /// By device and call id.
    std::map<Key, State> m_states;
};

}  // namespace host
