#include "host/csta/CauseTable.h"

#include <gtest/gtest.h>

namespace {

using host::CauseContext;
using host::causeNumber;

TEST(CauseTable, SaysWhatTheJournalActsUpon) {
    const struct {
        const char* word;
        CauseContext context;
        int cause;
    } cases[] = {
        // A call that comes to the phone by way of somebody else shows who that was.
        {"redirected", CauseContext::eDeliveredHere, 49},
        {"callForwardBusy", CauseContext::eDeliveredHere, 49},
        {"enteringDistribution", CauseContext::eDeliveredHere, 50},
        // The phone's own call rings somewhere else than was dialled.
        {"redirected", CauseContext::eDeliveredElsewhere, 25},
        {"callForwardNoAnswer", CauseContext::eDeliveredElsewhere, 8},
        // Diverted, Originated and whatever has no context.
        {"callForward", CauseContext::eOther, 9},
        {"callPickup", CauseContext::eOther, 13},
        {"callPickup", CauseContext::eEstablished, 11},
        // Only a hold that begins a transfer is remembered.
        {"consultation", CauseContext::eHeld, 3},
        {"transfer", CauseContext::eHeld, 3},
        {"singleStepTransfer", CauseContext::eHeld, 3},
        {"alternate", CauseContext::eHeld, 2},
        {"normal", CauseContext::eHeld, 1},
        {"consultation", CauseContext::eOther, 1},
        {"transfer", CauseContext::eConnectionCleared, 5},
        {"callPickup", CauseContext::eConnectionCleared, 40},
        {"busy", CauseContext::eFailed, 16},
        // A failure without a word is not ownerless, and no unknown word passes for one that the journal knows.
        {"", CauseContext::eFailed, 99},
        {"normal", CauseContext::eFailed, 99},
        {"Redirected", CauseContext::eDeliveredHere, 1},
        {"", CauseContext::eDeliveredHere, 0},
    };
    for (const auto& one : cases) {
        EXPECT_EQ(causeNumber(one.word, one.context), one.cause) << one.word;
    }
}

}  // namespace
