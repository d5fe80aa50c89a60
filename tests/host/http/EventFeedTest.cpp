#include "host/http/events/EventFeed.h"

#include <gtest/gtest.h>

#include <deque>
#include <memory>

namespace {

/// The text that a client has received, and its pending write.
struct Client {
    std::string text;
    host::StreamSink::Done pending;
    bool ended = false;

    void takes(bool written = true) { std::exchange(pending, nullptr)(written); }
    [[nodiscard]] long count(const std::string& words) const {
        long found = 0;
        for (std::size_t at = 0; (at = text.find(words, at)) != std::string::npos; ++at, ++found) {}
        return found;
    }
    [[nodiscard]] std::string lastId() const {
        const std::string last = text.substr(text.rfind("id: ") + 4);
        return last.substr(0, last.find('\n'));
    }
};

struct ClientSink final : host::StreamSink {
    explicit ClientSink(Client& of) : client(of) {}
    ~ClientSink() override { client.ended = true; }
    void write(std::string text, Done done) override {
        EXPECT_EQ(client.pending, nullptr);
        client.text += text;
        client.pending = std::move(done);
    }
    Client& client;
};

class EventFeedTest : public testing::Test {
protected:
    Client& join(const std::string& lastEventId = "") {
        Client& client = m_clients.emplace_back();
        m_feed.open(lastEventId)->begin(std::make_unique<ClientSink>(client));
        return client;
    }
    void count(std::initializer_list<int> numbers) {
        for (const int number : numbers) {
            m_feed.missedCallsCountUpdate(number);
        }
    }

    void runAside() {
        std::exchange(m_aside, [] {})();
    }

    std::deque<Client> m_clients;
    std::function<void()> m_aside = [] {};
    bool m_isBehind = false;
    std::function<void()> m_later = [] {};
    host::EventFeed m_feed{[](const std::function<void()>& work) { work(); },
                           [this](auto, std::function<void()> work) { m_later = std::move(work); },
                           [this](std::function<void()> work) {
                               m_aside = std::move(work);
                               if (!m_isBehind) {
                                   runAside();
                               }
                           },
                           {4, 4096},
                           {}};
};

TEST_F(EventFeedTest, SendsASlowClientTheMissedEventsInOnePieceAndATooSlowOneAResync) {
    Client& client = join();
    count({1, 2});
    EXPECT_EQ(client.count("event:"), 0);
    client.takes();
    EXPECT_EQ(client.count("event: missedCallsCountUpdate\ndata: {\"count\":"), 2);
    count({3, 4, 5, 6, 7});
    client.takes();
    EXPECT_EQ(client.count("event: resync"), 1);
    EXPECT_EQ(client.count("event:"), 3);
}

TEST_F(EventFeedTest, ContinuesAfterTheLastEventThatAClientGot) {
    Client& first = join();
    first.takes();
    const std::string begin = first.lastId();
    count({1});
    first.takes();
    const std::string one = first.lastId();
    count({2, 3});
    for (const auto& [id, events] : {std::pair{begin, 3}, std::pair{one, 2}, std::pair{std::string(), 0}}) {
        Client& again = join(id);
        again.takes();
        EXPECT_EQ(again.count("event: "), events) << id;
    }
    count({4, 5});
    for (const std::string& id :
         {begin, std::string("another-1"), one + "0", one + "x", begin + "9999999999999999999"}) {
        EXPECT_EQ(join(id).count("event: resync"), 1) << id;
    }
}

TEST_F(EventFeedTest, SendsResyncAtOnceThenOncePerIntervalAndAfterTheLastChange) {
    join();
    for (const int changes : {1, 5, 1, 0, 0, 1}) {
        for (int change = 0; change < changes; ++change) {
            m_feed.resync();
        }
        std::exchange(m_later, [] {})();
    }
    const std::string id = join().lastId();
    EXPECT_EQ(id.substr(id.find('-')), "-5")
        << "one, two of the five, the single one after them, and the last";
}

TEST_F(EventFeedTest, ResumesWithAResyncAfterChangesThatNoStreamCouldRead) {
    count({1});
    const std::string first = join().lastId();
    EXPECT_EQ(join(first).count("event: resync"), 0);
    m_clients[0].takes(false);
    m_clients[1].takes(false);
    count({2});
    EXPECT_EQ(join(first).count("event: resync"), 0) << "the client may return within a minute";
}

TEST_F(EventFeedTest, PublishesAResyncInPlaceOfTheChangesThatItCannotFollow) {
    Client& client = join();
    client.takes();
    m_isBehind = true;
    count({1, 2});
    runAside();
    client.takes();
    EXPECT_EQ(client.count("event: missedCallsCountUpdate"), 2);
    for (std::size_t number = 0; number <= host::EventFeed::kMaxQueued; ++number) {
        count({3});
    }
    runAside();
    EXPECT_EQ(std::pair(client.count("event: missedCallsCountUpdate"), client.count("event: resync")),
              std::pair(2L, 1L));
}

TEST_F(EventFeedTest, EndsTheStreamOfADisconnectedClientAndEveryStreamWhenItCloses) {
    Client& client = join();
    client.takes();
    m_feed.keepAlive();
    EXPECT_EQ(client.count(":\n\n"), 1);
    client.takes(false);
    const Client& open = join();
    EXPECT_EQ(std::pair(client.ended, open.ended), std::pair(true, false));
    m_feed.close();
    const Client& late = join();
    EXPECT_EQ(std::tuple(open.ended, late.ended, late.text, m_feed.streamCount()),
              std::tuple(true, true, "", 0U));
}

}  // namespace
