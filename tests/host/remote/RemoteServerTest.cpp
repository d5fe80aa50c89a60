#include "host/remote/RemoteServer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <latch>
#include <thread>
#include <utility>
#include <vector>

#include "host/remote/ChangeReporter.h"
#include "host/remote/RemoteClient.h"
#include "host/remote/RemoteError.h"
#include "platform/journal-library/ClientRequest.h"
#include "tests/host/remote/RemoteFixture.h"
#include "tests/support/CapturedLog.h"
#include "tests/support/RecordingResponse.h"

namespace {

using host::RemoteFrame;
using journaltest::CapturedLog;
using remotetest::RawClient;
using namespace std::string_literals;

using RemoteServerTest = remotetest::RemoteFixture;

TEST_F(RemoteServerTest, RespondsInOrderForAnySplitOfTheBytes) {
    serve({.maxBacklogBytes = 1000});
    std::string bytes;
    for (std::uint32_t id = 1; id <= 50; ++id) {
        bytes += RemoteFrame::encode(RemoteFrame::Kind::eRequest, id, id == 7 ? "" : "M\xFC\0ller"s);
    }
    int clients = 0;
    for (const std::size_t piece : {1U, 7U, 10000U}) {
        const RawClient client = connect();
        for (std::size_t at = 0; at < bytes.size(); at += piece) {
            client.write(std::string_view(bytes).substr(at, piece));
        }
        for (std::uint32_t id = 1; id <= 50; ++id) {
            EXPECT_EQ(client.read(), "A" + std::to_string(id) + (id == 7 ? " " : " M\xFC\0ller"s));
        }
        client.request(51, "who");
        EXPECT_EQ(client.read(), "A51 client-" + std::to_string(++clients) + " opera_text");
        client.request(52, "big 5000000");
        EXPECT_EQ(client.read().size(), 5000004U) << "a response may be longer than the backlog";
        client.request(53, "big " + std::to_string(RemoteFrame::kMaxTextBytes + 1));
        EXPECT_EQ(client.read(), "A53 failure");
    }
}

TEST_F(RemoteServerTest, NotifiesAndServesClientsWhileRequestsAreBlocked) {
    constexpr int kWaiting = 8;  // more than the initial threads of the server
    std::latch begun{1 + kWaiting};
    block("slow", begun);
    serve({.maxBacklogBytes = 5});  // less than one notification, which is queued if no other waits
    const RawClient client = subscribed();
    const RawClient other = connect();
    client.request(2, "slow");
    std::vector<RawClient> waiting;
    for (int turn = 0; turn < kWaiting; ++turn) {
        waiting.push_back(connect());
        waiting.back().request(2, "slow");
    }
    begun.wait();
    for (int count = 0; count < 100; ++count) {
        m_service.notifyAll(count);
        EXPECT_EQ(client.read(), "N0 count " + std::to_string(count));
    }
    other.request(3, "quick");
    EXPECT_EQ(other.read(), "A3 quick") << "a client that has not subscribed gets no notification";
    m_released.count_down();
    EXPECT_EQ(client.read(), "A2 slow");
}

TEST_F(RemoteServerTest, UnsubscribesAClientThatDisconnectsDuringItsRequest) {
    std::latch begun{1};
    block("subscribe", begun);
    serve();
    {
        const RawClient client = connect();
        client.request(1, "subscribe");
        begun.wait();
    }
    std::thread stopper([this] { m_server->stop(); });
    m_released.count_down();
    stopper.join();
    expectNoClientLeftAtStop();
}

// Clients connect, subscribe and disconnect while another thread changes the journal.
TEST_F(RemoteServerTest, ClientsMayConnectAndDisconnectWhileTheJournalChanges) {
    serve();
    std::atomic<bool> done{false};
    std::thread changer([&] {
        for (int count = 0; !done; ++count) {
            m_service.notifyAll(count);
            std::this_thread::yield();
        }
    });
    std::vector<std::jthread> users;
    for (int user = 0; user < 4; ++user) {
        users.emplace_back([this] {
            for (int turn = 0; turn < 20; ++turn) {
                const RawClient client = subscribed(2);
                EXPECT_EQ(client.read().rfind("N0 count ", 0), 0U);
                EXPECT_TRUE(responds(client));
            }
        });
    }
    users.clear();  // joins them
    expectNoClientLeftAtStop();
    done = true;
    changer.join();
}

TEST_F(RemoteServerTest, DisconnectsOnlyTheClientWithAnInvalidFrameOrWithoutAResponse) {
    const auto request = [](const std::string& text) {
        return RemoteFrame::encode(RemoteFrame::Kind::eRequest, 1, text);
    };
    const std::pair<std::string, std::string> rows[] = {
        {"GET / HTTP/1.1\r\n\r\n"s, "it sent a frame with an invalid length"},
        {"\0\0\0\4"s, "it sent a frame with an invalid length"},
        {"\0\0\0\6A\0\0\0\1x"s, "it sent a frame that is not a request"},
        {"\0\0\0\x06Z\0\0\0\1x"s, "it sent a frame that is not a request"},
        {request("silent"), "its request got no response"},
    };
    serve();
    const RawClient bystander = connect();
    for (const auto& [bytes, reason] : rows) {
        CapturedLog::reset();
        const RawClient client = connect();
        client.write(bytes);
        client.awaitClosed();
        EXPECT_EQ(CapturedLog::count("is cut off: " + reason), 1) << CapturedLog::dump();
        EXPECT_TRUE(responds(bystander));
    }
}

TEST_F(RemoteServerTest, DisconnectsAClientThatDoesNotReadAndDelaysNoOther) {
    serve({.maxBacklogBytes = 100000});
    const RawClient silent = subscribed();
    const RawClient other = connect();

    // More than the backlog and the socket buffers of the system together.
    for (int count = 0; count < 100000; ++count) {
        m_service.notifyAll(count);
    }
    EXPECT_TRUE(responds(other));
    silent.awaitClosed();
    EXPECT_EQ(CapturedLog::count("is cut off: it does not read what it is sent"), 1) << CapturedLog::dump();
    expectNoClientLeftAtStop();
}

TEST_F(RemoteServerTest, RejectsClientsBeyondTheLimitUntilOneDisconnects) {
    serve({.maxClients = 1});
    {
        const RawClient first = connect();
        EXPECT_TRUE(responds(first));
        EXPECT_THAT([this] { static_cast<void>(host::RemoteClient(m_directory.path()).call("x")); },
                    testing::ThrowsMessage<host::RemoteError>(testing::HasSubstr("too many clients")));
        EXPECT_EQ(CapturedLog::count("a client is rejected"), 1);
        EXPECT_TRUE(responds(first));
        first.write("\0\0"s);  // disconnecting within a frame is no error
    }
    // The server notices the end asynchronously: retry until it accepts.
    while (!responds(connect())) {}
    EXPECT_EQ(CapturedLog::count("is cut off"), 0) << CapturedLog::dump();
}

TEST_F(RemoteServerTest, ServesAClientWithoutAProxyWhichCannotSubscribe) {
    m_makeProxy = []() -> std::unique_ptr<Proxy> { throw std::runtime_error("no factory"); };
    serve();
    const RawClient client = connect();
    client.request(1, "subscribe");
    EXPECT_EQ(client.read(), "A1 failure");
}

TEST_F(RemoteServerTest, ReportsRequestsThatMayHaveChangedLists) {
    using journalxml::MethodId;
    int reports = 0;
    host::ChangeReporter reporter(m_invoker, [&reports](const Executable& /*target*/) { ++reports; });
    for (const auto& [request, changes] :
         {std::pair{journalxml::buildRequest(MethodId::eGetMissedCallList), 0},
          {journalxml::buildRequest(MethodId::eUnsubscribeForJournalEvents), 0},
          {journalxml::buildRequest(MethodId::eDeleteAllCalls), 1},
          {"<Method>8</Method", 0}}) {
        journaltest::RecordingResponse response;
        reporter.handleMessage(&m_service, request.data(), static_cast<int>(request.size()), &response);
        EXPECT_EQ(std::exchange(reports, 0), changes) << request;
    }
}

}  // namespace
