#include "host/remote/ClientBacklog.h"

#include <gtest/gtest.h>

#include <string>

namespace host {
namespace {

using Added = ClientBacklog::Added;

TEST(ClientBacklog, WakesTheWriterOnlyWhenItIsIdle) {
    ClientBacklog backlog(100);
    EXPECT_EQ(backlog.addNotification("one"), Added::eWakeUp);
    EXPECT_EQ(backlog.addAnswer("two"), Added::eQueued);
    EXPECT_EQ(backlog.take(), "one");
    EXPECT_EQ(backlog.addNotification("three"), Added::eQueued);
    EXPECT_EQ(backlog.take(), "two");
    EXPECT_EQ(backlog.take(), "three");
    EXPECT_EQ(backlog.addNotification("four"), Added::eQueued) << "the writer has not seen the end yet";
    EXPECT_EQ(backlog.take(), "four");
    EXPECT_EQ(backlog.take(), std::nullopt);
    EXPECT_EQ(backlog.addNotification("five"), Added::eWakeUp);
}

TEST(ClientBacklog, HoldsNotificationsUpToItsBoundAndSaysOnceThatItIsExceeded) {
    ClientBacklog backlog(10);
    EXPECT_EQ(backlog.addNotification("12345"), Added::eWakeUp);
    EXPECT_EQ(backlog.addNotification("67890"), Added::eQueued);
    EXPECT_EQ(backlog.addNotification("1"), Added::eOverflow);
    EXPECT_EQ(backlog.addNotification("1"), Added::eClosed);
    EXPECT_EQ(backlog.addAnswer("1"), Added::eClosed);
    EXPECT_EQ(backlog.take(), std::nullopt);
}

TEST(ClientBacklog, WhatWasTakenMakesRoom) {
    ClientBacklog backlog(10);
    for (int turn = 0; turn < 100; ++turn) {
        EXPECT_NE(backlog.addNotification("1234567890"), Added::eOverflow);
        EXPECT_TRUE(backlog.take());
    }
}

TEST(ClientBacklog, CountsNotificationsOnlyAndRefusesOneBeyondTheWholeBoundAtOnce) {
    ClientBacklog backlog(10);
    EXPECT_EQ(backlog.addAnswer(std::string(1000, 'x')), Added::eWakeUp);
    EXPECT_EQ(backlog.addNotification("1234567890"), Added::eQueued);
    ClientBacklog empty(10);
    EXPECT_EQ(empty.addNotification("12345678901"), Added::eOverflow);
}

TEST(ClientBacklog, DropsEverythingWhenItIsClosed) {
    ClientBacklog backlog(10);
    EXPECT_EQ(backlog.addNotification("one"), Added::eWakeUp);
    backlog.close();
    EXPECT_EQ(backlog.take(), std::nullopt);
    EXPECT_EQ(backlog.addNotification("two"), Added::eClosed);
}

}  // namespace
}  // namespace host
