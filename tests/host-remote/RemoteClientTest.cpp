#include "host/remote/RemoteClient.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <string>

#include "host/remote/RemoteError.h"
#include "tests/host-remote/RemoteFixture.h"

namespace {

using host::FileDescriptor;
using host::RemoteClient;
using host::RemoteError;
using host::RemoteFrame;
using remotetest::RemoteFixture;
using ::testing::AllOf;
using ::testing::HasSubstr;

template <typename Function>
std::string errorOf(const Function& function) {
    try {
        function();
    } catch (const RemoteError& error) {
        return error.what();
    }
    return "no error";
}

class RemoteClientTest : public RemoteFixture {};

TEST_F(RemoteClientTest, SaysWhatToDoWhenNobodyServes) {
    const auto connecting = [this] { const RemoteClient client(m_directory.path()); };
    const auto expected = AllOf(HasSubstr("cannot reach calljournal at " + m_directory.path().string()),
                                HasSubstr("start it with `calljournal serve`"));
    EXPECT_THAT(errorOf(connecting), expected);
    serve();
    EXPECT_EQ(errorOf(connecting), "no error");
    m_server->stop();
    EXPECT_THAT(errorOf(connecting), expected) << "the file is there, and nobody behind it";
}

TEST_F(RemoteClientTest, CallsAndKeepsNotificationsThatComeMeanwhile) {
    m_invoker.m_meanwhile = [this](const std::string& request) {
        if (request == "change") {
            m_service.tellAll(1);
            m_service.tellAll(2);
        }
    };
    serve();
    RemoteClient client(m_directory.path());
    EXPECT_EQ(client.call("subscribe"), "yes");
    EXPECT_EQ(client.call("change"), "change");
    EXPECT_EQ(client.nextNotification(), "count 1");
    EXPECT_EQ(client.nextNotification(), "count 2");
    EXPECT_EQ(client.call("change"), "change");
    EXPECT_EQ(client.takeNotifications(), (std::deque<std::string>{"count 1", "count 2"}));
    EXPECT_TRUE(client.takeNotifications().empty());
}

TEST_F(RemoteClientTest, CarriesLongTextsBothWays) {
    serve();
    RemoteClient client(m_directory.path());
    const std::string text(3000000, 'y');
    EXPECT_EQ(client.call(text), text);
    EXPECT_EQ(client.callMethod(text), "opera_text: " + text);
}

TEST_F(RemoteClientTest, StopsWaitingWhenItIsInterrupted) {
    serve();
    RemoteClient client(m_directory.path());
    EXPECT_EQ(client.call("subscribe"), "yes");
    std::array<int, 2> ends{};
    ASSERT_EQ(::pipe(ends.data()), 0);
    const FileDescriptor interrupt(ends[0]);
    const FileDescriptor writer(ends[1]);
    ASSERT_EQ(::write(writer.get(), "x", 1), 1);
    EXPECT_EQ(client.nextNotification(interrupt.get()), std::nullopt);
    m_service.tellAll(5);
    EXPECT_EQ(client.nextNotification(), "count 5") << "and may go on afterwards";
}

TEST_F(RemoteClientTest, HearsThatTheServerWentAway) {
    serve();
    RemoteClient client(m_directory.path());
    EXPECT_EQ(client.call("subscribe"), "yes");
    m_service.tellAll(1);
    EXPECT_EQ(client.nextNotification(), "count 1");
    m_server->stop();
    EXPECT_THAT(errorOf([&] { static_cast<void>(client.nextNotification()); }), HasSubstr("was closed"));
}

/// A server that says what the test wants, whatever it is asked.
class OddServer {
public:
    explicit OddServer(const std::filesystem::path& directory)
        : m_socket(directory), m_listener(m_socket.takeListener()) {}

    void accept() { m_peer = FileDescriptor(::accept(m_listener.get(), nullptr, nullptr)); }
    void say(const std::string& bytes) const {
        ASSERT_EQ(::send(m_peer.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL),
                  static_cast<ssize_t>(bytes.size()));
    }

private:
    host::ServerSocket m_socket;
    FileDescriptor m_listener;
    FileDescriptor m_peer;
};

TEST_F(RemoteClientTest, GivesUpWaitingForAnAnswerAtItsLimit) {
    OddServer server(m_directory.path());
    RemoteClient client(m_directory.path());
    EXPECT_THAT(errorOf([&] { static_cast<void>(client.call("x", std::chrono::milliseconds(20))); }),
                HasSubstr("does not answer"));
}

TEST_F(RemoteClientTest, PassesOverAnAnswerToAnotherRequest) {
    OddServer server(m_directory.path());
    RemoteClient client(m_directory.path());
    server.accept();
    server.say(RemoteFrame::encode(RemoteFrame::Kind::eAnswer, 7, "late"));
    server.say(RemoteFrame::encode(RemoteFrame::Kind::eAnswer, 1, "right"));
    EXPECT_EQ(client.call("x"), "right");
}

TEST_F(RemoteClientTest, RefusesWhatIsNoFrame) {
    OddServer server(m_directory.path());
    RemoteClient client(m_directory.path());
    server.accept();
    server.say("HTTP/1.1 400 Bad Request\r\n");
    EXPECT_THAT(errorOf([&] { static_cast<void>(client.call("x")); }),
                HasSubstr("something else than frames"));
}

}  // namespace
