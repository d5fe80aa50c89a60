#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "host/remote/ClientBacklog.h"
#include "host/remote/RemoteFrame.h"
#include "tests/support/Table.h"

namespace host {
namespace {

using Kind = RemoteFrame::Kind;
using namespace std::string_literals;

/// Runs one step on a backlog: "n5" and "r5" add a notification and a response of 5 bytes, "take" returns the
/// size.
std::string outcomeOf(const std::string& step, ClientBacklog& backlog) {
    if (step == "close") {
        backlog.close();
        return step;
    }
    if (step == "take") {
        const auto taken = backlog.take();
        return taken ? std::to_string(taken->size()) : "none";
    }
    std::string frame(std::stoul(step.substr(1)), 'x');
    switch (step.front() == 'n' ? backlog.addNotification(frame) : backlog.addResponse(frame)) {
        case ClientBacklog::Added::eQueued: return "queued";
        case ClientBacklog::Added::eWakeUp: return "wake";
        case ClientBacklog::Added::eOverflow: return "overflow";
        case ClientBacklog::Added::eClosed: break;
    }
    return "closed";
}

// "wake" follows only after "none". The limit of 10 bytes is for queued notifications.
TEST(ClientBacklog, WakesAnIdleWriterAndLimitsItsNotifications) {
    for (const auto& row : journaltest::table(2, R"(
        n1 r2 take n3 take take n4 take take n5 | wake queued 1 queued 2 3 queued 4 none wake
        n5 n5 n1 n1 r1 take                     | wake queued overflow closed closed none
        n10 take n10 take n10 take              | wake 10 queued 10 queued 10
        r1000 n10 n1                            | wake queued overflow
        n1 close take n1                        | wake close none closed
    )")) {
        ClientBacklog backlog(10);
        std::vector<std::string> outcomes;
        for (const std::string& step : journaltest::split(row[0], ' ')) {
            outcomes.push_back(outcomeOf(step, backlog));
        }
        EXPECT_EQ(outcomes, journaltest::split(row[1], ' ')) << row[0];
    }
}

TEST(RemoteFrame, IsEncodedAsDocumented) {
    EXPECT_EQ(RemoteFrame::encode(Kind::eRequest, 1, "<r><Method>2</Method></r>"),
              "\0\0\0\x1eQ\0\0\0\x01<r><Method>2</Method></r>"s);
    EXPECT_EQ(RemoteFrame::encode(Kind::eResponse, 0xFFEEDDCC, ""), "\0\0\0\x05"s + "A\xFF\xEE\xDD\xCC");
    const std::string longer = RemoteFrame::encode(Kind::eNotification, 0, std::string(0x012345, 'x'));
    EXPECT_EQ(longer.substr(0, 9), "\0\x01\x23\x4AN\0\0\0\0"s);
    EXPECT_EQ(RemoteFrame::readBody("Q\xFF\xEE\xDD\xCC").value().id, 0xFFEEDDCC);
    EXPECT_FALSE(RemoteFrame::readBody("Q\0\0\0"s));
}

}  // namespace
}  // namespace host
