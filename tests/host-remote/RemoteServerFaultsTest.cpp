#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "tests/host-remote/RemoteFixture.h"
#include "tests/support/CapturedLog.h"

namespace {

using host::RemoteFrame;
using journaltest::CapturedLog;
using remotetest::RemoteFixture;
using namespace std::string_literals;

class RemoteServerFaultsTest : public RemoteFixture {};

TEST_F(RemoteServerFaultsTest, AMalformedFrameClosesThatClientOnlyWithALine) {
    struct Row {
        std::string bytes;
        std::string line;
    };
    const std::vector<Row> rows{
        {"\0\0\0\0"s, "it announced a frame of an impossible length"},
        {"\0\0\0\x04Q\0\0\0"s, "it announced a frame of an impossible length"},
        {"\x01\0\0\x06Q\0\0\0\0"s, "it announced a frame of an impossible length"},
        {"GET / HTTP/1.1\r\n\r\n"s, "it announced a frame of an impossible length"},
        {RemoteFrame::encode(RemoteFrame::Kind::eAnswer, 1, "text"), "it sent a frame that is no request"},
        {RemoteFrame::encode(RemoteFrame::Kind::eNotification, 1, "text"),
         "it sent a frame that is no request"},
        {"\0\0\0\x06Z\0\0\0\1x"s, "it sent a frame that is no request"},
    };
    serve();
    RawClient bystander = connect();
    for (const Row& row : rows) {
        CapturedLog::reset();
        RawClient client = connect();
        client.write(row.bytes);
        EXPECT_TRUE(client.awaitClosed());
        EXPECT_EQ(CapturedLog::count("is cut off: " + row.line), 1) << CapturedLog::dump();
        EXPECT_TRUE(answers(bystander));
    }
}

TEST_F(RemoteServerFaultsTest, AClientThatGoesInTheMiddleOfAFrameIsNoFault) {
    serve();
    {
        RawClient client = connect();
        EXPECT_TRUE(answers(client));
        client.write(RemoteFrame::encode(RemoteFrame::Kind::eRequest, 1, "half of it").substr(0, 12));
    }
    m_server->stop();
    EXPECT_EQ(CapturedLog::count("is cut off"), 0) << CapturedLog::dump();
    EXPECT_EQ(CapturedLog::count("is gone"), 1);
}

TEST_F(RemoteServerFaultsTest, AClientThatDoesNotReadIsCutOffAndHoldsUpNobody) {
    m_padding = 10000;
    serve({.maxBacklogBytes = 1000000});
    RawClient deaf = subscribed();
    RawClient other = connect();

    // More than the backlog and what the system buffers for a socket together.
    for (int count = 0; count < 1000; ++count) {
        m_service.tellAll(count);
    }
    EXPECT_TRUE(answers(other));
    EXPECT_TRUE(deaf.awaitClosed());
    EXPECT_EQ(CapturedLog::count("is cut off: it does not read what it is sent"), 1) << CapturedLog::dump();
    m_server->stop();
    EXPECT_EQ(m_service.subscriptions(), 0U);
}

TEST_F(RemoteServerFaultsTest, TurnsAwayClientsBeyondTheLimit) {
    serve({.maxClients = 2});
    RawClient first = connect();
    RawClient second = connect();
    EXPECT_TRUE(answers(first));
    EXPECT_TRUE(answers(second));
    RawClient third = connect();
    EXPECT_TRUE(third.awaitClosed());
    EXPECT_EQ(CapturedLog::count("a client is turned away"), 1);
    EXPECT_TRUE(answers(first));
}

TEST_F(RemoteServerFaultsTest, AClientThatLeavesMakesRoomForAnother) {
    serve({.maxClients = 1});
    { RawClient first = connect(); }
    // The server learns of the end on its own time: try until there is room.
    bool admitted = false;
    for (int turn = 0; turn < 1000 && !admitted; ++turn) {
        RawClient next = connect();
        admitted = answers(next);
    }
    EXPECT_TRUE(admitted);
}

TEST_F(RemoteServerFaultsTest, ARequestThatIsNotAnsweredClosesItsClientInsteadOfLettingItWait) {
    serve();
    RawClient client = connect();
    client.request(1, "silent");
    EXPECT_TRUE(client.awaitClosed());
    EXPECT_EQ(CapturedLog::count("its request was not answered"), 1);
}

TEST_F(RemoteServerFaultsTest, AnAnswerBeyondTheFrameBoundClosesItsClient) {
    serve();
    RawClient client = connect();
    client.request(1, "big " + std::to_string(RemoteFrame::kMaxTextBytes + 1));
    EXPECT_TRUE(client.awaitClosed());
    EXPECT_EQ(CapturedLog::count("the answer to its request is too long"), 1);
}

TEST_F(RemoteServerFaultsTest, AClientWithoutAProxyIsServedButCannotSubscribe) {
    m_makeProxy = []() -> std::unique_ptr<Proxy> { throw std::runtime_error("no factory"); };
    serve();
    RawClient client = connect();
    client.request(1, "subscribe");
    EXPECT_EQ(client.readAnswer().value().text, "failure");
    EXPECT_TRUE(answers(client));
    EXPECT_EQ(CapturedLog::count("cannot subscribe: no factory"), 1);
}

}  // namespace
