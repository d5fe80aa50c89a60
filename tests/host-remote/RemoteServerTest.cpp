#include "host/remote/RemoteServer.h"

#include <gtest/gtest.h>

#include <latch>
#include <string>
#include <thread>
#include <vector>

#include "tests/host-remote/RemoteFixture.h"

namespace {

using host::RemoteFrame;
using remotetest::RemoteFixture;

class RemoteServerTest : public RemoteFixture {};

TEST_F(RemoteServerTest, AnswersEachRequestWithItsId) {
    serve();
    RawClient client = connect();
    client.request(4711, "hello");
    const auto answer = client.read();
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->kind, RemoteFrame::Kind::eAnswer);
    EXPECT_EQ(answer->id, 4711U);
    EXPECT_EQ(answer->text, "hello");
    client.request(1, "");
    EXPECT_EQ(client.read().value().text, "") << "an answer without payload is an empty frame";
}

TEST_F(RemoteServerTest, GivesEveryClientANameOfItsOwn) {
    serve();
    std::vector<std::string> names;
    for (int turn = 0; turn < 3; ++turn) {
        RawClient client = connect();
        client.request(1, "who");
        names.push_back(client.readAnswer().value().text);
    }
    EXPECT_EQ(names, (std::vector<std::string>{"client-1", "client-2", "client-3"}));
}

TEST_F(RemoteServerTest, PutsFramesTogetherThatComeByteByByte) {
    serve();
    RawClient client = connect();
    for (const char byte : RemoteFrame::encode(RemoteFrame::Kind::eRequest, 5, "slowly")) {
        client.write(std::string(1, byte));
    }
    EXPECT_EQ(client.readAnswer().value().text, "slowly");
}

TEST_F(RemoteServerTest, AnswersRequestsThatWereSentTogetherInTheirOrder) {
    serve();
    RawClient client = connect();
    std::string all;
    for (std::uint32_t id = 1; id <= 50; ++id) {
        all += RemoteFrame::encode(RemoteFrame::Kind::eRequest, id, "request " + std::to_string(id));
    }
    client.write(all);
    for (std::uint32_t id = 1; id <= 50; ++id) {
        const auto answer = client.readAnswer();
        ASSERT_TRUE(answer);
        EXPECT_EQ(answer->id, id);
        EXPECT_EQ(answer->text, "request " + std::to_string(id));
    }
}

TEST_F(RemoteServerTest, ASlowRequestOfOneClientHoldsUpNobodyElse) {
    std::latch released(1);
    m_invoker.m_meanwhile = [&](const std::string& request) {
        if (request == "slow") {
            released.wait();
        }
    };
    serve();
    RawClient slow = connect();
    RawClient quick = connect();
    slow.request(1, "slow");
    EXPECT_TRUE(answers(quick));
    released.count_down();
    EXPECT_EQ(slow.readAnswer().value().text, "slow");
}

TEST_F(RemoteServerTest, NotificationsReachSubscribersAlsoWhileTheirRequestIsAtWork) {
    std::latch begun(1);
    std::latch released(1);
    m_invoker.m_meanwhile = [&](const std::string& request) {
        if (request == "slow") {
            begun.count_down();
            released.wait();
        }
    };
    serve();
    RawClient client = subscribed();
    RawClient other = connect();
    client.request(2, "slow");
    begun.wait();
    m_service.tellAll(3);
    const auto notification = client.read();
    ASSERT_TRUE(notification);
    EXPECT_EQ(notification->kind, RemoteFrame::Kind::eNotification);
    EXPECT_EQ(notification->id, 0U);
    EXPECT_EQ(notification->text, "count 3");
    released.count_down();
    EXPECT_EQ(client.read().value().text, "slow");
    for (int count = 0; count < 200; ++count) {
        m_service.tellAll(count);
    }
    for (int count = 0; count < 200; ++count) {
        EXPECT_EQ(client.read().value().text, "count " + std::to_string(count));
    }
    EXPECT_TRUE(answers(other)) << "and a client that has not subscribed is told nothing";
}

TEST_F(RemoteServerTest, DeliversAnAnswerThatIsLongerThanTheBacklog) {
    serve({.maxBacklogBytes = 1000});
    RawClient client = connect();
    client.request(1, "big 5000000");
    EXPECT_EQ(client.readAnswer().value().text.size(), 5000000U);
    EXPECT_TRUE(answers(client));
}

TEST_F(RemoteServerTest, AClientThatGoesIsUnsubscribedAsOftenAsItSubscribed) {
    serve();
    RawClient stays = subscribed(1);
    { RawClient goes = subscribed(3); }
    m_server->stop();
    EXPECT_EQ(m_service.subscriptions(), 0U);
    EXPECT_EQ(m_proxies, 0);
    m_service.tellAll(1);
}

TEST_F(RemoteServerTest, AClientThatGoesWhileItsRequestIsAtWorkIsUnsubscribedBehindIt) {
    std::latch begun(1);
    std::latch released(1);
    m_invoker.m_meanwhile = [&](const std::string& request) {
        if (request == "subscribe") {
            begun.count_down();
            released.wait();
        }
    };
    serve();
    {
        RawClient client = connect();
        client.request(1, "subscribe");
        begun.wait();
    }
    std::thread stopper([&] { m_server->stop(); });
    released.count_down();
    stopper.join();
    EXPECT_EQ(m_service.subscriptions(), 0U);
    EXPECT_EQ(m_proxies, 0);
}

TEST_F(RemoteServerTest, StopClosesEveryClientAndTakesNoOther) {
    serve();
    RawClient first = subscribed();
    RawClient second = connect();
    EXPECT_TRUE(answers(second));
    m_server->stop();
    EXPECT_TRUE(first.awaitClosed());
    EXPECT_TRUE(second.awaitClosed());
    EXPECT_EQ(m_proxies, 0);
    EXPECT_THROW(RawClient(m_directory.path()), std::runtime_error);
    m_server->stop();
}

// Clients come, subscribe, are told and go, while somebody changes the journal all the time.
TEST_F(RemoteServerTest, ClientsMayComeAndGoWhileTheJournalChanges) {
    serve();
    std::atomic<bool> done{false};
    std::thread changer([&] {
        for (int count = 0; !done; ++count) {
            m_service.tellAll(count);
            std::this_thread::yield();
        }
    });
    std::vector<std::thread> users;
    for (int user = 0; user < 4; ++user) {
        users.emplace_back([this] {
            for (int turn = 0; turn < 20; ++turn) {
                RawClient client = subscribed(2);
                EXPECT_TRUE(client.read());
                EXPECT_TRUE(answers(client));
            }
        });
    }
    for (std::thread& user : users) {
        user.join();
    }
    m_server->stop();
    done = true;
    changer.join();
    EXPECT_EQ(m_service.subscriptions(), 0U);
    EXPECT_EQ(m_proxies, 0);
}

}  // namespace
