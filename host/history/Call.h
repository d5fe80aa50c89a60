#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "host/calls/CallReason.h"
#include "journal-items/ListTraits.h"

namespace host {

/// A party of a call as it was filed. A plain value.
struct Party {
    std::string number;
    std::string name;

    [[nodiscard]] bool operator==(const Party&) const = default;
};

/// One call of the history. A plain value. Times are UTC, to the second.
struct Call {
    /// A number that never changes and is never used again; 0 for a call that is not stored.
    std::int64_t id = 0;
    /// The list in which the call was filed; never the callbacks.
    ListName list = ListName::eMissed;
    Party party;
    /// The name of the contact that has the party's number now; empty if there is none.
    std::string contactName;
    std::optional<Party> connected;
    /// The party from which the call came here, or by which it left.
    std::optional<Party> redirecting;
    CallReason reason = CallReason::eNone;
    std::chrono::sys_seconds start;
    std::optional<std::chrono::sys_seconds> established;
    std::optional<std::chrono::sys_seconds> ended;
    /// The time for which the parties talked.
    std::chrono::seconds duration{0};
    /// The call ended at a time that is not known exactly.
    bool endApproximate = false;
    /// The line key on which a call to a shared line or a group came; empty for the own line.
    std::string lineKey;
    /// The switch's call id; empty if it is not known. A switch uses its ids again.
    std::string callId;
    /// The unique id of the entry that has the call; std::nullopt if its entry has left its list.
    std::optional<std::int64_t> entry;
    /// False while the call's entry counts as a new missed call.
    bool viewed = true;
    /// The time at which a missed call was called back, which has removed its entry.
    std::optional<std::chrono::sys_seconds> calledBackAt;
};

/// The shown name: the contact's now, else the name as filed.
[[nodiscard]] inline const std::string& displayNameOf(const Call& call) {
    return call.contactName.empty() ? call.party.name : call.contactName;
}

/// True for a call that was placed here.
[[nodiscard]] inline bool isOutgoing(const Call& call) noexcept {
    return call.list == ListName::eDialled;
}

}  // namespace host
