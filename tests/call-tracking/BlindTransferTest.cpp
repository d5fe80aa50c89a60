#include "src/JournalServiceEvents/BlindTransfer.h"

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "platform/csta/CSTACallControlEvents.h"
#include "platform/csta/CSTAEventCause.h"
#include "platform/framework/Executable.h"
#include "src/JournalServiceEvents/ConnectionClearedSinkIfc.h"
#include "tests/support/FakeContext.h"

namespace {

using journal::BlindTransfer;
using std::chrono::milliseconds;

/// Notes the call ids of the events that are handled, with their causes.
class Sink final : public journal::ConnectionClearedSinkIfc {
public:
    void immediatelyhandleCSTAConnectionClearedEvent(CSTAConnectionClearedEvent* event) override {
        handled.push_back(event->getDroppedConnectionCallID() + "/" + std::to_string(event->getCause()));
    }
    std::vector<std::string> handled;
};

class BlindTransferTest : public testing::Test, public Executable {
public:
    void SetUp() override {
        transfer = std::make_unique<BlindTransfer>(sink);
        transfer->start(context, *this);
    }
    void timerEvent(int id) override { ++(transfer->onTimer(id) ? ownExpiries : foreignExpiries); }

    void holds(const char* callId, int cause = CSTA_EC_HeldForTransfer) const {
        CSTAHeldEvent event;
        event.setConnection(callId, "2001");
        event.setCause(cause);
        transfer->handleCSTAHeldEvent(event);
        transfer->eventDelivered(event.getType());
    }
    void clears(const char* callId, int cause = CSTA_EC_NormalClearing) const {
        CSTAConnectionClearedEvent event;
        event.setConnection(callId, "2001");
        event.setCause(cause);
        transfer->handleCSTAConnectionClearedEvent(&event);
        transfer->eventDelivered(event.getType());
    }
    void somethingElseHappens() const { transfer->eventDelivered(CSTAEventCode::eOriginated); }
    void heldAgain() const { transfer->eventDelivered(CSTAEventCode::eHeld); }

    using Handled = std::vector<std::string>;

    journaltest::FakeContext context;
    Sink sink;
    std::unique_ptr<BlindTransfer> transfer;
    int ownExpiries = 0;
    int foreignExpiries = 0;
};

TEST_F(BlindTransferTest, HandlesAClearAtOnceUnlessItFollowsTheHoldOfItsOwnCall) {
    struct Row {
        const char* name;
        void (*before)(BlindTransferTest&);
        bool heldBack;
    };
    const Row rows[] = {
        {"nothing was held", [](BlindTransferTest&) {}, false},
        {"another call was held", [](BlindTransferTest& line) { line.holds("8"); }, false},
        {"held for another reason", [](BlindTransferTest& line) { line.holds("7", CSTA_EC_Alternate); },
         false},
        {"something came in between",
         [](BlindTransferTest& line) {
             line.holds("7");
             line.somethingElseHappens();
         },
         false},
        {"held for a transfer", [](BlindTransferTest& line) { line.holds("7"); }, true},
        {"another reason leaves the call that was held for a transfer",
         [](BlindTransferTest& line) {
             line.holds("7");
             line.holds("8", CSTA_EC_Alternate);
         },
         true},
    };
    for (const Row& row : rows) {
        SetUp();
        sink.handled.clear();
        row.before(*this);
        clears("7");
        EXPECT_EQ(sink.handled.empty(), row.heldBack) << row.name;
        EXPECT_EQ(context.runningTimers().size(), row.heldBack ? 1U : 0U) << row.name;
    }
}

TEST_F(BlindTransferTest, HandlesAHeldBackClearOneSecondLater) {
    holds("7");
    clears("7", 5);
    context.advance(milliseconds(999));
    EXPECT_TRUE(sink.handled.empty());
    context.advance(milliseconds(1));
    EXPECT_EQ(sink.handled, Handled{"7/5"});
    context.advance(milliseconds(5000));
    EXPECT_EQ(sink.handled.size(), 1U);
    EXPECT_EQ(ownExpiries, 1);
}

TEST_F(BlindTransferTest, HandlesOnlyTheSecondOfTwoClearsASecondAfterIt) {
    holds("7");
    clears("7", 1);
    context.advance(milliseconds(600));
    heldAgain();
    clears("7", 2);
    context.advance(milliseconds(999));
    EXPECT_TRUE(sink.handled.empty());
    context.advance(milliseconds(1));
    EXPECT_EQ(sink.handled, Handled{"7/2"});
}

TEST_F(BlindTransferTest, HandlesAClearWhoseSecondIsOverBeforeTheNextTakesItsPlace) {
    holds("7");
    clears("7", 1);
    // The expiry is on its way: the timer has run out, nobody has been told.
    context.stopTimer(context.timers().front());
    heldAgain();
    clears("7", 2);
    EXPECT_EQ(sink.handled, Handled{"7/1"});
    context.advance(milliseconds(1000));
    EXPECT_EQ(sink.handled, (Handled{"7/1", "7/2"}));
}

TEST_F(BlindTransferTest, IgnoresAnExpiryWithNothingHeldBack) {
    EXPECT_TRUE(transfer->onTimer(context.timers().front()));
    EXPECT_FALSE(transfer->onTimer(context.timers().front() + 1));
    EXPECT_FALSE(transfer->onTimer(-1));
    EXPECT_TRUE(sink.handled.empty());
}

TEST_F(BlindTransferTest, GivesTheHeldBackEventToWhoeverEndsTheWait) {
    holds("7");
    clears("7", 5);
    EXPECT_TRUE(transfer->stopBlindTransferTimer());
    const auto pending = transfer->takePending();
    ASSERT_NE(pending, nullptr);
    EXPECT_EQ(pending->getDroppedConnectionCallID(), "7");
    EXPECT_EQ(transfer->takePending(), nullptr);
    EXPECT_FALSE(transfer->stopBlindTransferTimer());
    context.advance(milliseconds(5000));
    EXPECT_TRUE(sink.handled.empty());
}

TEST_F(BlindTransferTest, GoesWithItsTimerArmedAndAnEventHeldBack) {
    holds("7");
    clears("7");
    transfer.reset();
    EXPECT_TRUE(context.timers().empty());
    context.advance(milliseconds(5000));
    EXPECT_TRUE(sink.handled.empty());
    EXPECT_EQ(ownExpiries + foreignExpiries, 0);
}

TEST_F(BlindTransferTest, HoldsNothingBackWithoutATimer) {
    context.refuseTimers();
    SetUp();
    holds("7");
    clears("7");
    EXPECT_EQ(sink.handled.size(), 1U);

    transfer = std::make_unique<BlindTransfer>(sink);  // never started
    holds("7");
    clears("7");
    EXPECT_EQ(sink.handled.size(), 2U);
}

}  // namespace
