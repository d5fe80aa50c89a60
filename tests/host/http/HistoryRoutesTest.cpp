#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "host/digits/NumberTexts.h"
#include "host/directory/Phonebook.h"
#include "host/http/messages/HttpError.h"
#include "host/http/messages/Router.h"
#include "host/http/resources/CallsResource.h"
#include "host/http/resources/PartiesResource.h"
#include "host/http/resources/StatisticsResource.h"
#include "tests/support/FakeDigits.h"
#include "tests/support/FakeJournalService.h"
#include "tests/support/StoredCalls.h"
#include "tests/support/Table.h"
#include "tests/support/TemporaryDatabase.h"

namespace {

using Json = nlohmann::ordered_json;
using journaltest::store;

class HistoryRoutesTest : public testing::Test {
protected:
    HistoryRoutesTest() {
        m_calls.addRoutes(m_router);
        m_statistics.addRoutes(m_router);
        m_parties.addRoutes(m_router);
        m_digits.spellings["47 11"] = "4711";
        store(*m_database, {ListName::eMissed, 1000, "4711", "Ann", 0, 0, true});
        store(*m_database, {ListName::eReceived, 2000, "4711", "Ann", 75});
        store(*m_database, {ListName::eDialled, 3000, "30", "Bob", 5});
    }

    /// The response of "GET /api/v1/calls"; its status is in `m_status`.
    Json sends(const std::string& methodAndTarget, const std::string& body = {}) {
        host::HttpRequest request;
        request.method = methodAndTarget.substr(0, methodAndTarget.find(' '));
        request.target = methodAndTarget.substr(methodAndTarget.find(' ') + 1);
        request.body = body;
        EXPECT_TRUE(request.readTarget());
        const host::Router::Route* const route = m_router.find(request);
        try {
            route->checkQuery(request);
            const host::HttpResponse response = route->handler(request);
            m_status = response.status;
            return response.body.empty() ? Json() : Json::parse(response.body);
        } catch (const host::HttpError& error) {
            m_status = error.status();
            return error.code();
        }
    }

    const std::string m_line = "2001";
    int m_status = 0;
    int m_resyncs = 0;
    journaltest::TemporaryDatabase m_database;
    journaltest::FakeDigits m_digits;
    journaltest::FakeJournalService m_journal;
    host::StoredEntries m_entries{{m_journal, *m_database, "2001", &m_digits, [this] { ++m_resyncs; }}};
    host::NumberTexts m_numbers{"DE", m_digits};
    host::Phonebook m_phonebook{*m_database, m_digits, "2001"};
    host::CallsResource m_calls{m_entries, m_numbers};
    host::StatisticsResource m_statistics{*m_database, "2001", &m_digits, m_numbers};
    host::PartiesResource m_parties{{*m_database, m_line, &m_digits, m_phonebook, m_numbers}};
    host::Router m_router;
};

TEST_F(HistoryRoutesTest, ServesPagesAndSingleCalls) {
    Json page = sends("GET /api/v1/calls?limit=2&tz=UTC");
    EXPECT_EQ(page["items"].size(), 2U);
    page = sends("GET /api/v1/calls?cursor=" + page["next"].get<std::string>());
    const Json call = Json::parse(R"({"id":1,"uniqueId":"1","list":"missed","direction":"incoming",
        "number":"4711","name":"Ann","displayName":"Ann","connectedNumber":null,"connectedName":null,"redirectingNumber":null,
        "redirectingName":null,"reason":"","start":"1970-01-01T00:16:40Z","answered":null,"ended":null,
        "duration":0,"endApproximate":false,"lineKey":"","callId":"","viewed":false,"calledBackAt":null,
        "numberText":"4711","place":null})");
    EXPECT_EQ(page, (Json{{"items", {call}}, {"next", nullptr}}));
    EXPECT_EQ(sends("GET /api/v1/calls/1"), call);
}

TEST_F(HistoryRoutesTest, DeletesWhatTheFiltersSelectAndNothingWithoutOne) {
    for (const char* const refused : {"", "?tz=UTC", "?all=false", "?all=true&list=missed", "?limit=5",
                                      "?number=", "?since=soon", "?liste=missed"}) {
        EXPECT_TRUE(sends(std::string("DELETE /api/v1/calls") + refused).is_string()) << refused;
        EXPECT_EQ(m_status, 400) << refused;
    }
    EXPECT_EQ(m_database.number("SELECT count(*) FROM call"), 3);
    EXPECT_EQ(sends("DELETE /api/v1/calls?list=dialled&until=1970-01-01T00:50:01Z"), (Json{{"deleted", 1}}));
    EXPECT_EQ(m_resyncs, 1);
    static_cast<void>(sends("PUT /api/v1/parties/4711", R"({"note":"rude"})"));
    EXPECT_EQ(sends("DELETE /api/v1/calls?number=47%2011&list=received"), (Json{{"deleted", 1}}));
    EXPECT_EQ(sends("GET /api/v1/parties/4711")["note"], "rude");
    static_cast<void>(sends("DELETE /api/v1/calls?number=47%2011"));
    EXPECT_EQ(sends("GET /api/v1/parties/4711")["note"], "") << "a number alone is deleted everywhere";
    EXPECT_EQ(sends("DELETE /api/v1/calls/2"), "unknown-call");
    EXPECT_EQ(m_status, 404);
}

TEST_F(HistoryRoutesTest, CountsAndKeepsNotes) {
    const Json statistics = sends("GET /api/v1/statistics?by=day&tz=UTC&since=1970-01-01");
    EXPECT_EQ(statistics["groups"][0]["key"], "1970-01-01");
    EXPECT_EQ(statistics["totals"]["answered"], 1);
    EXPECT_EQ(sends("GET /api/v1/statistics?limit=1")["topParties"][0]["displayName"], "Ann");
    EXPECT_EQ(sends("GET /api/v1/statistics?by=year"), "bad-parameter");
    std::string counts;
    const Json byList = sends("GET /api/v1/statistics?by=list&search=ann");
    for (const Json& group : byList["groups"]) {
        counts += group["key"].get<std::string>() + group["calls"].dump() + " ";
    }
    EXPECT_EQ(counts, "missed1 dialled0 received1 forwarded0 ");

    const Json ann = sends("PUT /api/v1/parties/47%2011", R"({"note":"calls late"})");
    EXPECT_EQ(ann, Json::parse(R"({"number":"4711","numberText":"4711","place":null,"displayName":"Ann",
        "contact":null,"calls":2,"totals":{"calls":2,"missed":1,"dialled":0,"received":1,"forwarded":0,
        "talkTime":75},"firstCall":"1970-01-01T00:16:40Z","lastCall":"1970-01-01T00:33:20Z",
        "note":"calls late"})"));
    EXPECT_EQ(sends("GET /api/v1/parties/4711"), ann);
    EXPECT_EQ(sends("PUT /api/v1/parties/4711", R"({"note":""})")["note"], "");
    EXPECT_EQ(sends("PUT /api/v1/parties/4711", R"({"text":""})"), "wrong-shape");
    Contact max;
    max.setSurname("Max");
    max.setOffice("+4989123456");
    ASSERT_TRUE(m_phonebook.add(max));
    const Json german = sends("GET /api/v1/parties/%2B4989123456?language=de");
    EXPECT_EQ(german["calls"], 0);
    EXPECT_EQ(german["contact"]["surname"], "Max");
    EXPECT_EQ(german["numberText"], "089 123456");
    EXPECT_EQ(german["place"], "München");
    EXPECT_EQ(sends("GET /api/v1/calls?language=fr"), "bad-parameter");
}

}  // namespace
