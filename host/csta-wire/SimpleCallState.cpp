#include "host/csta-wire/SimpleCallState.h"

#include <algorithm>
#include <array>

namespace host {

namespace {

constexpr std::array kStates = {
    SimpleCallState{"callNull", "null", "null"},
    SimpleCallState{"callPending", "initiated", "null"},
    SimpleCallState{"callOriginated", "connected", "null"},
    SimpleCallState{"callDelivered", "connected", "alerting"},
    SimpleCallState{"callDeliveredHeld", "hold", "alerting"},
    SimpleCallState{"callReceived", "alerting", "connected"},
    SimpleCallState{"callReceivedOnHold", "alerting", "hold"},
    SimpleCallState{"callEstablished", "connected", "connected"},
    SimpleCallState{"callEstablishedHeld", "hold", "connected"},
    SimpleCallState{"callEstablishedOnHold", "connected", "hold"},
    SimpleCallState{"callQueued", "connected", "queued"},
    SimpleCallState{"callQueuedHeld", "hold", "queued"},
    SimpleCallState{"callFailed", "connected", "fail"},
    SimpleCallState{"callFailedHeld", "hold", "fail"},
    SimpleCallState{"callBlocked", "fail", "null"},
};

template <typename Predicate>
std::optional<SimpleCallState> find(const Predicate& matches) noexcept {
    const auto* const found = std::find_if(kStates.begin(), kStates.end(), matches);
    return found == kStates.end() ? std::nullopt : std::optional(*found);
}

}  // namespace

std::optional<SimpleCallState> simpleCallState(std::string_view word) noexcept {
    return find([word](const SimpleCallState& state) { return state.word == word; });
}

std::optional<SimpleCallState> simpleCallState(std::string_view own, std::string_view other) noexcept {
    return find([&](const SimpleCallState& state) { return state.own == own && state.other == other; });
}

}  // namespace host
