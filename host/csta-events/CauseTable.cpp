#include "host/csta-events/CauseTable.h"

#include <algorithm>
#include <array>

#include "platform/csta/CSTAEventCause.h"

namespace host {

namespace {

struct CauseRow {
    std::string_view word;
    int cause;
    CauseContext context = CauseContext::eOther;
};

// A row with a context takes precedence over the row of the same word without one.
constexpr std::array kCauses = {
    CauseRow{"aCDForward", CSTA_EC_RedirectedByDistribution},
    CauseRow{"alternate", CSTA_EC_Alternate},
    CauseRow{"busy", CSTA_EC_Busy},
    CauseRow{"callBack", CSTA_EC_CallBack},
    CauseRow{"callCancelled", CSTA_EC_CallCancelled},
    CauseRow{"callForward", CSTA_EC_CallForward},
    CauseRow{"callForwardBusy", CSTA_EC_CallForwardBusy},
    CauseRow{"callForwardImmediate", CSTA_EC_CallForwardImmediate},
    CauseRow{"callForwardNoAnswer", CSTA_EC_CallForwardNoAnswer},
    CauseRow{"callNotAnswered", CSTA_EC_CallNotAnswered},
    CauseRow{"callPickup", CSTA_EC_CallPickup},
    CauseRow{"campOn", CSTA_EC_CampOn},
    CauseRow{"conference", CSTA_EC_Conference},
    CauseRow{"destNotObtainable", CSTA_EC_DestNotObtainable},
    CauseRow{"distributed", CSTA_EC_RedirectedByDistribution},
    CauseRow{"doNotDisturb", CSTA_EC_DoNotDisturb},
    CauseRow{"enteringDistribution", CSTA_EC_RedirectedByDistribution},
    CauseRow{"makeCall", CSTA_EC_NewCall},
    CauseRow{"networkCongestion", CSTA_EC_NetworkCongestion},
    CauseRow{"newCall", CSTA_EC_NewCall},
    CauseRow{"noAvailableAgents", CSTA_EC_NoAvailableAgents},
    CauseRow{"normalClearing", CSTA_EC_NormalClearing},
    CauseRow{"overflow", CSTA_EC_Overflow},
    CauseRow{"override", CSTA_EC_Override},
    CauseRow{"park", CSTA_EC_CallPark},
    CauseRow{"recall", CSTA_EC_Recall},
    CauseRow{"recallBusy", CSTA_EC_Recall},
    CauseRow{"recallForwarded", CSTA_EC_Recall},
    CauseRow{"recallNoAnswer", CSTA_EC_Recall},
    CauseRow{"redirected", CSTA_EC_Redirected},
    CauseRow{"singleStepTransfer", CSTA_EC_Transfer},
    CauseRow{"transfer", CSTA_EC_Transfer},

    // The own phone rings for a forwarded call: only the forwarding party matters, not the reason.
    CauseRow{"callForward", CSTA_EC_Redirected, CauseContext::eDeliveredHere},
    CauseRow{"callForwardBusy", CSTA_EC_Redirected, CauseContext::eDeliveredHere},
    CauseRow{"callForwardImmediate", CSTA_EC_Redirected, CauseContext::eDeliveredHere},
    CauseRow{"callForwardNoAnswer", CSTA_EC_Redirected, CauseContext::eDeliveredHere},

    CauseRow{"callForward", CSTA_EC_Forwarded, CauseContext::eDeliveredElsewhere},
    CauseRow{"redirected", CSTA_EC_Forwarded, CauseContext::eDeliveredElsewhere},

    CauseRow{"callPickup", CSTA_EC_GroupPickupNotify, CauseContext::eEstablished},

    CauseRow{"consultation", CSTA_EC_HeldForTransfer, CauseContext::eHeld},
    CauseRow{"singleStepTransfer", CSTA_EC_HeldForTransfer, CauseContext::eHeld},
    CauseRow{"transfer", CSTA_EC_HeldForTransfer, CauseContext::eHeld},

    CauseRow{"callPickup", CSTA_EC_CompletedElsewhere, CauseContext::eConnectionCleared},
    CauseRow{"keyOperation", CSTA_EC_CompletedElsewhere, CauseContext::eConnectionCleared},
    CauseRow{"multipleAlerting", CSTA_EC_CompletedElsewhere, CauseContext::eConnectionCleared},
};

const CauseRow* findRow(std::string_view word, CauseContext context) noexcept {
    const auto* const row =
        std::find_if(kCauses.begin(), kCauses.end(), [word, context](const CauseRow& candidate) {
            return candidate.word == word && candidate.context == context;
        });
    return row == kCauses.end() ? nullptr : row;
}

}  // namespace

int causeNumber(std::string_view word, CauseContext context) noexcept {
    if (const CauseRow* row = findRow(word, context)) {
        return row->cause;
    }
    if (const CauseRow* row = findRow(word, CauseContext::eOther)) {
        return row->cause;
    }
    if (context == CauseContext::eFailed) {
        return CSTA_EC_Other;
    }
    return word.empty() ? CSTA_EC_None : CSTA_EC_Unknown;
}

}  // namespace host
