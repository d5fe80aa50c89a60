#include "host/remote/RemoteClient.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/remote/RemoteError.h"
#include "tests/host/remote/RemoteFixture.h"

namespace {

using host::FileDescriptor;
using host::RemoteClient;
using host::RemoteFrame;
using namespace std::string_literals;

using RemoteClientTest = remotetest::RemoteFixture;

TEST_F(RemoteClientTest, CallsAndStoresNotificationsThatArriveMeanwhile) {
    serve();
    RemoteClient client(m_directory.path());
    EXPECT_EQ(client.call("subscribe"), "yes");
    for (const int count : {1, 2, 3}) {
        m_service.notifyAll(count);
    }
    const std::string text(3000000, 'y');
    EXPECT_EQ(client.call(text), text);
    EXPECT_EQ(client.nextNotification(), "count 1");
    EXPECT_EQ(client.takeNotifications(), (std::deque<std::string>{"count 2", "count 3"}));
}

TEST_F(RemoteClientTest, AcceptsItsOwnResponseOnlyAndRefusesInvalidData) {
    const auto response = [](std::uint32_t id, const char* text) {
        return RemoteFrame::encode(RemoteFrame::Kind::eResponse, id, text);
    };
    const std::pair<std::string, std::string> rows[] = {
        {response(7, "late") + response(1, "right"), "right"},
        {"", "does not respond"},
        {"HTTP/1.1 400 Bad Request\r\n", "not a frame"},
    };
    for (const auto& [bytes, expected] : rows) {
        // A server that sends these bytes to any request.
        host::ServerSocket socket(m_directory.path());
        const FileDescriptor listener(socket.takeListener());
        RemoteClient client(m_directory.path());
        const FileDescriptor peer(::accept(listener.get(), nullptr, nullptr));
        ASSERT_GE(::send(peer.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL), 0);
        std::string outcome;
        try {
            outcome = client.call("x", std::chrono::milliseconds(500));
        } catch (const host::RemoteError& error) {
            outcome = error.what();
        }
        EXPECT_THAT(outcome, testing::HasSubstr(expected));
    }
}

TEST(RemoteFrame, IsEncodedAsDocumented) {
    EXPECT_EQ(RemoteFrame::encode(RemoteFrame::Kind::eRequest, 1, "<r><Method>2</Method></r>"),
              "\0\0\0\x1eQ\0\0\0\1<r><Method>2</Method></r>"s);
    EXPECT_EQ(RemoteFrame::readBody("Q\xFF\xEE\xDD\xCC").value().id, 0xFFEEDDCC);
    EXPECT_FALSE(RemoteFrame::readBody("Q\0\0\0"s));
}

TEST(ServerSocket, NamesTheProblemOfTheDirectory) {
    const TemporaryDirectory directory;
    const auto deep = directory.path() / std::string(120, 'd');
    const auto blocked = directory.path() / "blocked";
    std::filesystem::create_directories(deep);
    std::filesystem::create_directories(blocked / "calljournal.sock");
    for (const auto& [path, reason] :
         {std::pair(directory.path() / "absent", "cannot use the data directory"),
          std::pair(deep, "longer than the system allows"),
          std::pair(blocked, "exists and is not a socket")}) {
        EXPECT_THAT([&path = path] { host::ServerSocket{path}; },
                    testing::ThrowsMessage<host::RemoteError>(testing::HasSubstr(reason)));
    }
    EXPECT_TRUE(std::filesystem::exists(blocked / "calljournal.sock"));
}

}  // namespace
