#pragma once

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "host/calls/PhoneCall.h"

namespace host {

/// Identifies one call for all time: a switch reuses its call ids.
struct PhoneCallKey {
    std::string device;
    std::string callId;
    PhoneCall::Time firstEvent{};

    // clang-tidy takes the 0 of the generated comparison for a pointer.
    [[nodiscard]] auto operator<=>(const PhoneCallKey&) const = default;  // NOLINT(modernize-use-nullptr)
};

[[nodiscard]] inline PhoneCallKey keyOf(const PhoneCall& call) {
    return {call.device, call.callId, call.firstEvent};
}

/// The context of one event for the services of the host while the journal handles it. The thread that
/// delivers the event sets it; the clock and the database look it up on that thread:
///  1. The clock returns the time of the event, which may lie back.
///  2. The database removes a call that the event ends in the transaction that files it, and stores with
///     the entry that the end is approximate.
struct DeliveryContext {
    /// The time of the event; `std::nullopt` for the time of the clock.
    std::optional<PhoneCall::Time> time{};
    struct EndedCall {
        PhoneCallKey call;
        /// The call id in the delivered event, if it is another one.
        std::string deliveredId{};
        /// The journal may file the call by a later event: the call stays known for a few seconds.
        bool mayBeFiledLater = false;
        /// The journal may hold the event back: if the program ends meanwhile, its next run files the call.
        bool mayBeHeldBack = false;
        /// Set by the database when it has stored the call's entry.
        bool filed = false;
    };
    /// The calls that the event ends; a transfer ends two.
    std::vector<EndedCall> ends{};
    /// The calls ended at a time that is not known exactly.
    bool endApproximate = false;
    /// The event establishes a call. The journal removes the missed entry of a party that is called back.
    bool establishes = false;

    /// The context of the delivery in progress on this thread, or null.
    [[nodiscard]] static DeliveryContext* current() noexcept { return slot(); }

    /// Runs `deliver` with this context on the calling thread.
    void around(const std::function<void()>& deliver) {
        struct Restore {
            DeliveryContext* const previous = std::exchange(slot(), nullptr);
            Restore() = default;
            Restore(const Restore&) = delete;
            Restore& operator=(const Restore&) = delete;
            ~Restore() { slot() = previous; }
        } const restore;
        slot() = this;
        deliver();
    }

private:
    [[nodiscard]] static DeliveryContext*& slot() noexcept {
        thread_local DeliveryContext* context = nullptr;
        return context;
    }
};

}  // namespace host
