#include "host/remote/NotificationFrames.h"

#include <gtest/gtest.h>

#include "host/remote/RemoteFrame.h"
#include "platform/journal-library/JournalServiceHelper.h"

namespace {

using Helper = JournalServiceHelper;

std::string frameWith(const std::string& text) {
    return host::RemoteFrame::encode(host::RemoteFrame::Kind::eNotification, 0, text);
}

TEST(NotificationFramesTest, AllClientsShareAFrameThatHasTheStoredCount) {
    std::optional<std::size_t> stored = 1500;
    host::NotificationFrames frames([&stored] { return stored; });
    const std::string count = Helper::obsReqMissedCallsCountUpdate(1000);
    const std::string other = Helper::obsReqCallBacksCountUpdate(3);

    const auto first = frames.frameOf(count);
    EXPECT_EQ(*first, frameWith(Helper::obsReqMissedCallsCountUpdate(1500)));
    const auto callBacks = frames.frameOf(other);
    EXPECT_EQ(*callBacks, frameWith(other));
    EXPECT_EQ(frames.frameOf(count), first) << "the next client";
    EXPECT_EQ(frames.frameOf(other), callBacks);

    stored = 1499;
    EXPECT_EQ(*frames.frameOf(count), frameWith(Helper::obsReqMissedCallsCountUpdate(1499)));
    stored = std::nullopt;
    EXPECT_EQ(*frames.frameOf(count), frameWith(count)) << "the database fails";
    for (unsigned number = 0; number < 20; ++number) {
        const std::string message = Helper::obsReqCallBacksCountUpdate(number);
        EXPECT_EQ(*frames.frameOf(message), frameWith(message));
    }
}

}  // namespace
