#include "host/webhooks/WaitingEvents.h"

#include <gtest/gtest.h>

#include <chrono>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "host/journal-events/EventQueue.h"
#include "tests/support/StoredCalls.h"
#include "tests/support/TemporaryDatabase.h"

namespace {

using host::JournalEventKind;
using host::WaitingEvents;
using Json = nlohmann::json;

class WaitingEventsTest : public testing::Test {
protected:
    WaitingEventsTest() { EXPECT_TRUE(WaitingEvents::load(*m_database, {&m_first, &m_second})); }

    void clears(int times, std::chrono::seconds ago = {}) {
        EXPECT_TRUE(m_database->write("clearing", [&](host::Database::Session& session) {
            for (int each = 0; each < times; ++each) {
                m_queue.addListDeleted(session, ListName::eMissed);
            }
            session.query("UPDATE webhook_event SET time = time - ? WHERE id > ?")
                .bind(std::int64_t{ago.count()})
                .bind(session.lastInsertedId() - times)
                .run();
        }));
    }
    void adds(JournalEventKind kind, std::int64_t call) {
        EXPECT_TRUE(m_database->write(
            "adding", [&](host::Database::Session& session) { m_queue.addOfCall(session, kind, call); }));
    }
    /// The events that it gets, and of calls their numbers: "call.filed 4711".
    static std::vector<std::string> gets(WaitingEvents& waiting) {
        std::vector<std::string> events;
        while (const auto message = waiting.next()) {
            const Json json = Json::parse(message->body);
            events.push_back(json["event"].get<std::string>() +
                             (json["call"].is_null() ? "" : " " + json["call"]["number"].get<std::string>()) +
                             (json.contains("dropped") ? " " + json["dropped"].dump() : ""));
            waiting.delivered(*message);
        }
        return events;
    }
    static auto now() { return std::chrono::system_clock::now(); }

    journaltest::TemporaryDatabase m_database;
    const host::EventQueue m_queue{
        "2001",
        {JournalEventKind::eCallFiled, JournalEventKind::eMissedViewed, JournalEventKind::eListDeleted}};
    const WaitingEvents::Source m_source{*m_database};
    WaitingEvents m_first{m_source, "first", {JournalEventKind::eListDeleted}};
    WaitingEvents m_second{
        m_source, "second", {JournalEventKind::eCallFiled, JournalEventKind::eListDeleted}};
};

TEST_F(WaitingEventsTest, AreThoseThatAWebhookWantsFromItsPositionOn) {
    const std::int64_t call = journaltest::store(*m_database, {.number = "4711"});
    adds(JournalEventKind::eCallFiled, call);
    adds(JournalEventKind::eMissedViewed, call);
    adds(JournalEventKind::eCallRinging, call);  // which none wants
    clears(1);
    EXPECT_EQ(m_first.count(), 1);
    EXPECT_EQ(gets(m_first), std::vector<std::string>{"list.deleted"});
    EXPECT_EQ(m_database.number("SELECT count(*) FROM webhook_event"), 3);
    EXPECT_TRUE(WaitingEvents::storePositions(*m_database, {&m_first, &m_second}));
    EXPECT_EQ(m_database.text("SELECT group_concat(kind) FROM webhook_event"), "0,4")
        << "the other one wants them";

    // Another run, with a webhook more.
    WaitingEvents first(m_source, "first", {JournalEventKind::eListDeleted});
    WaitingEvents second(m_source, "second", {JournalEventKind::eCallFiled, JournalEventKind::eListDeleted});
    WaitingEvents third(m_source, "third", {JournalEventKind::eListDeleted});
    EXPECT_TRUE(WaitingEvents::load(*m_database, {&first, &second, &third}));
    EXPECT_TRUE(gets(first).empty());
    EXPECT_TRUE(gets(third).empty());
    EXPECT_EQ(gets(second), (std::vector<std::string>{"call.filed 4711", "list.deleted"}));
    EXPECT_TRUE(WaitingEvents::storePositions(*m_database, {&first, &second, &third}));
    EXPECT_EQ(m_database.number("SELECT count(*) FROM webhook_event"), 0);
}

TEST_F(WaitingEventsTest, AreKeptForAReceiverThatIsDownOnlyAsFarAsItWantsThem) {
    const std::int64_t call = journaltest::store(*m_database, {.number = "4711"});
    clears(1);
    for (int each = 0; each < 3; ++each) {
        adds(JournalEventKind::eCallFiled, call);
        EXPECT_EQ(gets(m_second).back(), "call.filed 4711");
        EXPECT_TRUE(WaitingEvents::storePositions(*m_database, {&m_first, &m_second}));
        EXPECT_EQ(m_database.text("SELECT group_concat(kind) FROM webhook_event"), "4");
    }
    EXPECT_EQ(gets(m_first), std::vector<std::string>{"list.deleted"});
    EXPECT_TRUE(WaitingEvents::storePositions(*m_database, {&m_first, &m_second}));
    EXPECT_EQ(m_database.number("SELECT count(*) FROM webhook_event"), 0);
}

TEST_F(WaitingEventsTest, AreDroppedWhenTheyAreOldOrTooMany) {
    clears(3, WaitingEvents::kLongest + std::chrono::seconds(5));
    clears(1, WaitingEvents::kLongest - std::chrono::minutes(1));
    EXPECT_EQ(m_first.limit(now()), 3);
    EXPECT_EQ(m_first.limit(now()), 0);
    EXPECT_TRUE(WaitingEvents::storePositions(*m_database, {&m_first, &m_second}));
    EXPECT_TRUE(WaitingEvents::load(*m_database, {&m_first, &m_second}));
    clears(static_cast<int>(WaitingEvents::kMost));
    EXPECT_EQ(m_first.limit(now()), 1);
    EXPECT_EQ(m_first.count(), WaitingEvents::kMost);
    const auto message = m_first.next();
    ASSERT_TRUE(message);
    const Json dropped = Json::parse(message->body);
    EXPECT_EQ(dropped["event"], "events.dropped");
    EXPECT_EQ(dropped["dropped"], 4);
    EXPECT_EQ(Json::parse(m_first.next()->body)["id"], dropped["id"]);
    m_first.delivered(*message);
    EXPECT_EQ(Json::parse(m_first.next()->body)["event"], "list.deleted");
    EXPECT_EQ(m_second.count(), WaitingEvents::kMost + 4) << "another webhook has its own limit";
}

TEST_F(WaitingEventsTest, AreRemovedWithTheirCallAlsoThoseOfItsRinging) {
    const std::int64_t call = journaltest::store(*m_database, {.start = 1000, .number = "4711"});
    const std::int64_t other = journaltest::store(*m_database, {.start = 1000, .number = "4712"});
    EXPECT_TRUE(m_database->write("preparing", [&](host::Database::Session& session) {
        session.query("UPDATE call SET call_id = '17', ended = 1100 WHERE id = ?").bind(call).run();
        m_queue.addOfCall(session, JournalEventKind::eCallFiled, call);
        m_queue.addOfCall(session, JournalEventKind::eCallFiled, other);
        // The switch has used the id before and after the call.
        for (const int time : {500, 1000, 1050, 2000}) {
            m_queue.add(session, {.kind = JournalEventKind::eCallRinging,
                                  .uid = std::to_string(time),
                                  .time = std::chrono::sys_seconds(std::chrono::seconds(time)),
                                  .callId = "17"});
        }
        session.query("DELETE FROM call WHERE id = ?").bind(call).run();
    }));
    EXPECT_EQ(m_database.text("SELECT group_concat(ifnull(call, uid)) FROM webhook_event"),
              std::to_string(other) + ",500,2000");
}

TEST_F(WaitingEventsTest, LoseAnErasedParty) {
    EXPECT_TRUE(m_database->write("preparing", [&](host::Database::Session& session) {
        const host::LiveCallEvent event{.uid = "a", .number = "4711", .name = "Ann"};
        m_queue.add(session, event);
        m_queue.add(session, event);  // as a batch that follows a filing does
        m_queue.add(session,
                    {.uid = "b", .number = "4712", .redirectingNumber = "4711", .redirectingName = "Ann"});
        m_queue.add(session, {.uid = "c", .number = "4712", .redirectingNumber = "4713"});
        EXPECT_EQ(session.query("UPDATE webhook_event SET start = 0").run(), 3);
        host::eraseFromEvents(session, "2001", [](const std::string& number) { return number == "4711"; });
    }));
    EXPECT_EQ(m_database.text("SELECT group_concat(uid || number || redirecting_number || redirecting_name) "
                              "FROM webhook_event"),
              "b4712,c47124713");
}

TEST_F(WaitingEventsTest, AreForgottenWithoutAWebhook) {
    clears(2);
    WaitingEvents::forget(*m_database);
    EXPECT_EQ(
        m_database.number("SELECT (SELECT count(*) FROM webhook) + (SELECT count(*) FROM webhook_event)"), 0);
}

}  // namespace
