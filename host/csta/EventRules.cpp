#include "host/csta/EventRules.h"

#include <array>
#include <cstddef>

#include "platform/csta/CSTALocalConnectionState.h"

namespace host {

namespace {

// In the order of the state numbers.
constexpr std::array<std::string_view, 7> kStateWords = {"null", "initiated", "alerting", "connected",
                                                         "hold", "queued",    "fail"};

struct InferredState {
    WireEvent event;
    int ofOwn;
    int ofOther;
};

constexpr std::array kInferred = {
    InferredState{WireEvent::eOriginated, CSTA_LCS_Connected, CSTA_LCS_Connected},
    InferredState{WireEvent::eOffered, CSTA_LCS_Alerting, CSTA_LCS_Connected},
    InferredState{WireEvent::eQueued, CSTA_LCS_Queued, CSTA_LCS_Queued},
    InferredState{WireEvent::eDelivered, CSTA_LCS_Alerting, CSTA_LCS_Connected},
    InferredState{WireEvent::eDiverted, CSTA_LCS_Null, CSTA_LCS_Connected},
    InferredState{WireEvent::eEstablished, CSTA_LCS_Connected, CSTA_LCS_Connected},
    InferredState{WireEvent::eHeld, CSTA_LCS_Hold, CSTA_LCS_Connected},
    InferredState{WireEvent::eRetrieved, CSTA_LCS_Connected, CSTA_LCS_Connected},
    InferredState{WireEvent::eFailed, CSTA_LCS_Fail, CSTA_LCS_Connected},
    InferredState{WireEvent::eConnectionCleared, CSTA_LCS_Null, CSTA_LCS_Null},
    InferredState{WireEvent::eTransferred, CSTA_LCS_Null, CSTA_LCS_Connected},
};

/// True if the connection is that of another party. An unknown phone that rings for an outgoing call is
/// another party; any diversion of an incoming call diverts it away from this phone.
bool isByOther(const EventContext& context) noexcept {
    if (context.event == WireEvent::eDiverted) {
        return context.outgoing && context.subject != EventParty::eMonitored;
    }
    if (context.event == WireEvent::eDelivered && context.subject == EventParty::eUnknown) {
        return context.outgoing;
    }
    return context.subject == EventParty::eOther;
}

}  // namespace

std::optional<int> localConnectionNumber(std::string_view word) noexcept {
    for (std::size_t number = 0; number < kStateWords.size(); ++number) {
        if (kStateWords[number] == word) {
            return static_cast<int>(number);
        }
    }
    return std::nullopt;
}

int localConnectionOf(const EventContext& context) noexcept {
    if (context.localConnection) {
        return *context.localConnection;
    }
    const bool byOther = isByOther(context);
    if (context.event == WireEvent::eConnectionCleared && context.conference && byOther) {
        return CSTA_LCS_Connected;
    }
    for (const InferredState& row : kInferred) {
        if (row.event == context.event) {
            return byOther ? row.ofOther : row.ofOwn;
        }
    }
    return CSTA_LCS_Null;
}

bool isForOwnConnection(const EventContext& context) noexcept {
    if (context.subject != EventParty::eOther) {
        return true;
    }
    const int own = localConnectionOf(context);
    switch (context.event) {
        case WireEvent::eConnectionCleared: return context.conference || own == CSTA_LCS_Null;
        case WireEvent::eHeld: return own == CSTA_LCS_Hold;
        case WireEvent::eRetrieved: return false;
        case WireEvent::eDiverted: return own == CSTA_LCS_Null || own == CSTA_LCS_Alerting;
        default: return true;
    }
}

bool endsWithoutClearedEvent(const EventContext& context) noexcept {
    return context.event == WireEvent::eDiverted && localConnectionOf(context) == CSTA_LCS_Null;
}

CauseContext causeContextOf(const EventContext& context) noexcept {
    switch (context.event) {
        case WireEvent::eDelivered:
            return localConnectionOf(context) == CSTA_LCS_Connected ? CauseContext::eDeliveredElsewhere
                                                                    : CauseContext::eDeliveredHere;
        case WireEvent::eEstablished: return CauseContext::eEstablished;
        case WireEvent::eHeld: return CauseContext::eHeld;
        case WireEvent::eFailed: return CauseContext::eFailed;
        case WireEvent::eConnectionCleared: return CauseContext::eConnectionCleared;
        default: return CauseContext::eOther;
    }
}

}  // namespace host
