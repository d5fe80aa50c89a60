#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "host/calls/PhoneCall.h"

namespace host {

/// An event that others can be told of. The database has the numbers: new ones come at the end.
enum class JournalEventKind {
    eCallFiled,
    eCallRinging,
    eCallEstablished,
    eMissedViewed,
    eListDeleted,
};

inline constexpr std::size_t kJournalEventKinds = 5;

/// The names in the configuration and in what is sent: "call.filed".
inline constexpr std::array<std::string_view, kJournalEventKinds> kJournalEventWords{
    "call.filed", "call.ringing", "call.answered", "missed.viewed", "list.deleted"};

[[nodiscard]] std::string_view wordOf(JournalEventKind kind) noexcept;
[[nodiscard]] std::optional<JournalEventKind> journalEventOf(std::string_view word) noexcept;

/// An event of a call that is not filed yet. A plain value.
struct LiveCallEvent {
    JournalEventKind kind = JournalEventKind::eCallRinging;
    /// Identifies the event for all time.
    std::string uid{};
    std::chrono::sys_seconds time{};
    /// Of the switch, which may use it again later.
    std::string callId{};
    /// The monitored device; empty for the line's own.
    std::string device{};
    bool outgoing = false;
    std::string number{};
    std::string name{};
    std::string redirectingNumber{};
    std::string redirectingName{};
    std::chrono::sys_seconds start{};
    std::optional<std::chrono::sys_seconds> established{};
};

/// The event by which a call changes from one state to another, `before` being null for a new call; or
/// std::nullopt. A pure function.
[[nodiscard]] std::optional<JournalEventKind> eventBetween(const PhoneCall* before, const PhoneCall& after);

/// The event of that call, with a new `uid` and the current time.
[[nodiscard]] LiveCallEvent liveCallEvent(JournalEventKind kind, const PhoneCall& call);

}  // namespace host
