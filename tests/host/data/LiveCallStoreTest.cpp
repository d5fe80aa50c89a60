#include "host/data/LiveCallStore.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <thread>
#include <tuple>
#include <vector>

#include "tests/host/data/DataAccessFixture.h"
#include "tests/support/TemporaryDatabase.h"

namespace {

using host::DeliveryContext;
using host::LiveCallStore;
using host::NotedCall;
using host::PhoneCall;
using journaltest::DataAccessFixture;
using journaltest::TemporaryDatabase;

PhoneCall::Time at(int seconds) {
    return PhoneCall::Time(std::chrono::seconds(1795238525 + seconds));
}

PhoneCall callOf(const std::string& callId, int seconds) {
    return {.callId = callId,
            .device = "localDeviceID",
            .role = host::PhoneRole::eConnected,
            .conference = true,
            .conferenceId = "30",
            .markedMissed = true,
            .pickUp = true,
            .elsewhere = true,
            .reason = host::CallReason::ePickUp,
            .calling = {"4711", "Ann"},
            .called = {"localDeviceID", ""},
            .redirecting = {"4700", "Désk"},
            .partner = {"4712", "Bob"},
            .others = {"4711", "2006"},
            .firstEvent = at(seconds),
            .established = at(seconds + 1),
            .lastEvent = at(seconds + 2)};
}

bool areEqual(const PhoneCall& one, const PhoneCall& other) {
    const auto members = [](const PhoneCall& call) {
        return std::tie(call.callId, call.device, call.role, call.outgoing, call.conference,
                        call.conferenceId, call.markedMissed, call.pickUp, call.transferred, call.elsewhere,
                        call.reason, call.calling, call.called, call.redirecting, call.partner, call.others,
                        call.firstEvent, call.established, call.lastEvent);
    };
    return members(one) == members(other);
}

MissedCallItem missedCall(const std::string& callId) {
    auto item = journaltest::itemOf<MissedCallItem>("e", "", {{"4711", "2026-11-21T05:22:05Z"}});
    auto infos = item.getMissedCallInfoList();
    infos.front().setCallId(callId);
    item.setMissedCallInfoList(infos);
    return item;
}

class LiveCalls : public testing::Test {
protected:
    void open() { store.emplace(*database, writer, "2001"); }
    /// The call ids that another connection sees.
    [[nodiscard]] std::string rows() const {
        return database.text(
            "SELECT ifnull(group_concat(line || ' ' || call_id, ', '), '') FROM "
            "(SELECT * FROM live_call ORDER BY call_id)");
    }
    [[nodiscard]] bool become(const std::string& expected) const {
        for (int i = 0; i < 500 && rows() != expected; ++i) {
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        return rows() == expected;
    }

    const TemporaryDatabase database;
    host::LiveCallWriter writer{*database};
    std::optional<LiveCallStore> store;
};

TEST_F(LiveCalls, AreNotedUntilTheyAreFiled) {
    open();
    EXPECT_TRUE(store->read().empty());
    host::LiveCallStore other(*database, writer, "3001");
    other.store(callOf("9", 0));
    const PhoneCall first = callOf("25", 0);
    const PhoneCall ended = callOf("26", 5);
    store->store(ended);
    store->store(first);
    EXPECT_TRUE(become("2001 25, 2001 26, 3001 9"));
    store->confirm(keyOf(first), at(50));
    store->end(keyOf(ended), at(60), true);
    store.reset();
    open();
    const std::vector<NotedCall> noted = store->read();
    ASSERT_EQ(noted.size(), 2U);
    EXPECT_TRUE(areEqual(noted[0].call, first));
    EXPECT_EQ(noted[0].seen, at(50));
    EXPECT_EQ(noted[0].ended, std::nullopt);
    EXPECT_TRUE(areEqual(noted[1].call, ended));
    EXPECT_EQ(noted[1].ended, at(60));
    EXPECT_TRUE(noted[1].endApproximate);

    // The transaction that files a call removes its row, and that of no later call with its id.
    const PhoneCall later = callOf("26", 70);
    store->store(later);
    EXPECT_TRUE(become("2001 25, 2001 26, 2001 26, 3001 9"));
    DataAccessFixture journal(*database);
    DeliveryContext context{
        .ends = {{.call = keyOf(callOf("99", 5))}, {.call = keyOf(ended), .deliveredId = "26@2002"}},
        .endApproximate = true};
    context.around([&] { journal.write<MissedCallItem>({missedCall("7")}); });
    EXPECT_FALSE(context.ends[1].filed);
    context.around([&] { journal.write<MissedCallItem>({missedCall("26@2002")}); });
    EXPECT_TRUE(context.ends[1].filed);
    EXPECT_FALSE(context.ends[0].filed);
    EXPECT_EQ(rows(), "2001 25, 2001 26, 3001 9");
    EXPECT_EQ(database.number("SELECT first_event FROM live_call WHERE call_id = '26'"),
              (1795238525 + 70) * 1000000L);
    EXPECT_EQ(database.text("SELECT group_concat(call_id || ' ' || end_approximate, ', ') FROM call"),
              "7 0, 26@2002 1");
    store->delivered(context);

    // A call that was not filed stays known for a while, and keeps its row if its end may be held back.
    const PhoneCall refused = callOf("28", 75);
    store->store(refused);
    EXPECT_TRUE(become("2001 25, 2001 26, 2001 28, 3001 9"));
    DeliveryContext unfiled{
        .ends = {
            {.call = keyOf(later), .deliveredId = "26@2003", .mayBeFiledLater = true, .mayBeHeldBack = true},
            {.call = keyOf(refused), .mayBeFiledLater = true}}};
    store->end(keyOf(refused), at(78), false);
    EXPECT_FALSE(store->ended("26")) << "live";
    store->end(keyOf(later), at(80), false);
    store->delivered(unfiled);
    EXPECT_FALSE(store->ended("26"));
    ASSERT_TRUE(store->ended("26@2003"));
    EXPECT_TRUE(store->ended("28"));
    EXPECT_EQ(store->ended("26@2003")->ended, at(80));
    store->store(callOf("27", 90));
    EXPECT_TRUE(become("2001 25, 2001 26, 2001 27, 3001 9"));
    // A timer of the journal files it, when no event is being delivered.
    journal.write<MissedCallItem>({missedCall("26"), missedCall("27")});
    EXPECT_EQ(rows(), "2001 25, 2001 27, 3001 9");
}

TEST_F(LiveCalls, AreWrittenWhenTheDatabaseIsFreeAgain) {
    open();
    SQLite::Database other = database.otherConnection();
    other.exec("BEGIN IMMEDIATE");
    store->store(callOf("25", 0));
    store->store(callOf("27", 0));
    std::this_thread::sleep_for(std::chrono::milliseconds(700));
    store->store(callOf("26", 0));
    store->setFiled(keyOf(callOf("27", 0)), true);  // by the transaction that held the lock
    other.exec("ROLLBACK");
    EXPECT_TRUE(become("2001 25, 2001 26"));
}

TEST_F(LiveCalls, AreAllNotedInAFileThatWasPutBack) {
    open();
    store->store(callOf("25", 0));
    EXPECT_TRUE(become("2001 25"));
    std::filesystem::remove(database.file());
    EXPECT_TRUE(database->maintain());
    database.otherConnection().exec("DELETE FROM live_call");
    store->store(callOf("26", 5));
    EXPECT_TRUE(become("2001 25, 2001 26"));
}

}  // namespace
