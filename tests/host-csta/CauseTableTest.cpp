#include "host/csta/CauseTable.h"

#include <gtest/gtest.h>

#include <vector>

#include "platform/csta/CSTAEventCause.h"

namespace {

using host::CauseContext;
using host::causeNumber;

struct CauseCase {
    const char* word;
    CauseContext context;
    int cause;
};

TEST(CauseTable, SaysWhatTheJournalActsUpon) {
    const std::vector<CauseCase> cases = {
        // A call that comes to the phone by way of somebody else shows who that was.
        {"redirected", CauseContext::eDeliveredHere, 49},
        {"callForwardBusy", CauseContext::eDeliveredHere, 49},
        {"distributed", CauseContext::eDeliveredHere, 50},
        {"enteringDistribution", CauseContext::eDeliveredHere, 50},
        {"newCall", CauseContext::eDeliveredHere, 22},
        {"recallNoAnswer", CauseContext::eDeliveredHere, 27},
        // The phone's own call rings somewhere else than was dialled.
        {"redirected", CauseContext::eDeliveredElsewhere, 25},
        {"callForward", CauseContext::eDeliveredElsewhere, 25},
        {"callForwardImmediate", CauseContext::eDeliveredElsewhere, 6},
        {"callForwardBusy", CauseContext::eDeliveredElsewhere, 7},
        {"callForwardNoAnswer", CauseContext::eDeliveredElsewhere, 8},
        // Diverted, Originated and whatever has no context.
        {"callForwardNoAnswer", CauseContext::eOther, 8},
        {"callForward", CauseContext::eOther, 9},
        {"callPickup", CauseContext::eOther, 13},
        {"park", CauseContext::eOther, 14},
        {"callPickup", CauseContext::eEstablished, 11},
        // Only a hold that begins a transfer is remembered.
        {"transfer", CauseContext::eHeld, 3},
        {"singleStepTransfer", CauseContext::eHeld, 3},
        {"consultation", CauseContext::eHeld, 1},
        {"alternate", CauseContext::eHeld, 2},
        {"transfer", CauseContext::eConnectionCleared, 5},
        {"multipleAlerting", CauseContext::eConnectionCleared, 40},
        {"callPickup", CauseContext::eConnectionCleared, 40},
        {"keyOperation", CauseContext::eConnectionCleared, 40},
        {"normalClearing", CauseContext::eConnectionCleared, 48},
        {"busy", CauseContext::eFailed, 16},
    };
    for (const CauseCase& one : cases) {
        EXPECT_EQ(causeNumber(one.word, one.context), one.cause) << one.word;
    }
}

TEST(CauseTable, DoesNotCallAFailureOwnerlessForWantOfAWord) {
    for (const char* word : {"", "normal", "None", "trunksBusy", "numberUnallocated", "NEWCALL"}) {
        const int failed = causeNumber(word, CauseContext::eFailed);
        EXPECT_NE(failed, 0) << word;
        EXPECT_NE(failed, 1) << word;
    }
}

TEST(CauseTable, LetsNoUnknownWordPassForOneThatTheJournalKnows) {
    for (const CauseContext context :
         {CauseContext::eOther, CauseContext::eDeliveredHere, CauseContext::eDeliveredElsewhere,
          CauseContext::eEstablished, CauseContext::eHeld, CauseContext::eConnectionCleared}) {
        EXPECT_EQ(causeNumber("somethingNew", context), CSTA_EC_Unknown);
        EXPECT_EQ(causeNumber("Redirected", context), CSTA_EC_Unknown);
        EXPECT_EQ(causeNumber("", context), CSTA_EC_None);
    }
}

}  // namespace
