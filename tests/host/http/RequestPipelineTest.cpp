#include "host/http/RequestPipeline.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <nlohmann/json.hpp>

#include "host/access/AccessTokens.h"
#include "host/access/Tickets.h"
#include "host/http/LinesResource.h"
#include "host/http/SessionRoutes.h"
#include "host/http/resources/ListsResource.h"
#include "host/log/PrivateText.h"
#include "host/stored-lists/StoredEntries.h"
#include "host/stored-lists/StoredLists.h"
#include "tests/support/CapturedLog.h"
#include "tests/support/FakeJournalService.h"
#include "tests/support/FakeLines.h"
#include "tests/support/ItemBuilders.h"
#include "tests/support/Table.h"
#include "tests/support/TemporaryDatabase.h"
#include "tests/support/TemporaryDirectory.h"

namespace {

using host::HttpResponse;

/// The lists and a page, on 127.0.0.1:80 of line 2001, with the token "secret".
class RequestPipelineTest : public testing::Test {
protected:
    RequestPipelineTest() {
        std::ofstream(m_directory.path() / "index.html") << "page";
        std::ofstream(m_directory.path() / "a.js") << "script";
        m_resource.addRoutes(m_router);
        m_router.add({"GET", "/broken", host::Scope::eRead,
                      [](const auto&) -> HttpResponse { throw std::runtime_error("why"); }});
        m_router.add({"GET", "/large", host::Scope::eRead,
                      [](const auto&) -> HttpResponse { throw std::bad_alloc(); }});
        const host::HistoryRows::Context context{m_line};
        m_database->write("test", [&](host::Database::Session& session) {
            for (const char* const name : {"Anna", "Bob", "Ann"}) {
                auto item = journaltest::itemOf<MissedCallItem>(name, "",
                                                                {{"4711", std::string("2026-11-2") +
                                                                              (name[3] == 'a'   ? "0"
                                                                               : name[0] == 'B' ? "1"
                                                                                                : "2") +
                                                                              "T10:00:00Z"}});
                item.setSurname(name);
                item.setViewed(name == std::string("Bob"));
                host::CallRows(session, context).write(item);
            }
        });
    }

    /// `headers` is "name: value; name: value"; they override a valid Host.
    HttpResponse respond(const std::string& method, const std::string& target, const std::string& headers,
                         const std::string& body = "") {
        host::HttpRequest request;
        request.method = method;
        request.target = target;
        request.headers["host"] = "127.0.0.1:80";
        std::string name;
        for (const std::string& header : journaltest::split(headers, ';')) {
            const std::size_t colon = header.find(": ");
            const bool goesOn = colon == std::string::npos;  // "gzip;q=0"
            name = goesOn ? name : header.substr(0, colon);
            request.headers[name] = goesOn ? request.headers[name] + ';' + header : header.substr(colon + 2);
        }
        request.body = body;
        host::Authenticator authenticator(m_token, &m_tokens, &m_tickets, m_publicUrl, m_origins);
        authenticator.setListenAddress({m_listen, 80});
        const host::PageFiles page(m_directory.path());
        host::Router router;
        host::addSessionRoutes(authenticator, router);
        host::LinesResource lines(m_lines);
        lines.addRoutes(router);
        router.add({"GET", "/open", host::Scope::eNone, [](const auto&) { return HttpResponse(); }});
        m_lines.set("2001", {&m_router, [](auto* /*routes*/) {}});
        m_lines.set("2002", {&m_router, [](auto* /*routes*/) {}});
        return host::RequestPipeline(authenticator, router, page, m_lines).handle(std::move(request));
    }

    /// The status and the code of an error, the id of an entry, or the counts and ids of a list.
    static std::string summary(const HttpResponse& response) {
        const auto json = nlohmann::json::parse(response.body.empty() ? "{}" : response.body);
        std::string text =
            std::to_string(response.status) + " " +
            json.value("/error/code"_json_pointer, json.value("entryId", json.empty() ? "-" : ""));
        if (json.contains("items")) {
            text += json["total"].dump() + "/" + json["unviewed"].dump();
            for (const auto& item : json["items"]) {
                text += " " + item["entryId"].get<std::string>();
            }
        }
        return text;
    }

    TemporaryDirectory m_directory;
    journaltest::FakeJournalService m_journal;
    host::Router m_router;
    journaltest::FakeLines m_lines;
    const std::string m_line = "2001";
    journaltest::TemporaryDatabase m_database;
    int m_resyncs = 0;
    host::StoredLists m_stored{*m_database, m_line};
    host::StoredEntries m_entries{{m_journal, *m_database, m_line, nullptr, [this] { ++m_resyncs; }}};
    host::ListsResource m_resource{m_stored, m_entries};
    host::AccessTokens m_tokens{*m_database};
    host::Tickets m_tickets;
    std::string m_publicUrl;
    std::vector<std::string> m_origins;
    std::optional<std::string> m_token = "secret";
    std::string m_listen = "127.0.0.1";
};

TEST_F(RequestPipelineTest, AcceptsRequestsOfTheSameOriginWithTheToken) {
    for (const auto& row : journaltest::table(4, R"(
        GET  | /api/v1/lists/missed | authorization: Bearer secret                         | 200
        HEAD | /api/v1/lists/missed | authorization: bEARER secret                         | 200
        GET  | /api/v1/lists/missed | cookie: calljournal-80=secret                        | 200
        GET  | /api/v1/lists/missed | cookie: calljournal-81=secret                        | 401 no-token
        GET  | /api/v1/lists/missed | authorization: Bearer secre                          | 401 wrong-token
        GET  | /api/v1/lists/missed | authorization: Bearer secreT                         | 401 wrong-token
        GET  | /api/v1/lists/missed | cookie: calljournal-80=other                         | 401 wrong-token
        GET  | /api/v1/lists/missed |                                                      | 401 no-token
        GET  | /nowhere             | authorization: Bearer secret                         | 404
        GET  | /broken              | authorization: Bearer secret                         | 500
        GET  | /large               | authorization: Bearer secret                         | 503
        GET  | /open                | host: LOCALHOST:9000                                 | 200
        GET  | /open                | host: 127.0.0.1.evil.example                         | 403
        GET  | /open                | f oo: b                                              | 400
        GET  | /open                | host: [localhost]                                    | 403
        GET  | /open                | origin: http://127.0.0.1:80                          | 200
        GET  | /open                | origin: http://127.0.0.1:81                          | 403
        GET  | /open                | origin: null                                         | 403
        GET  | /open                | sec-fetch-site: cross-site                           | 403
        GET  | /open                | sec-fetch-site: same-site; sec-fetch-mode: navigate  | 403
        GET  | /                    | sec-fetch-site: cross-site; sec-fetch-mode: navigate | 200
        GET  | /a.js                |                                                      | 200
        GET  | /b/../a.js           |                                                      | 400
        GET  | /b%2fa.js            |                                                      | 400
        GET  | /open                | host: 127.0.0.1:80, evil.example                     | 400
        POST | /a.js                |                                                      | 405 GET
        GET  | /?token=secret       |                                                      | 303 ./
        GET  | /?token=wrong        |                                                      | 303 ./?refused=1
        PUT  | /api/v1/lists/a      | authorization: Bearer secret                         | 405 GET, DELETE
        GET  | /api/v1/lists/missed/viewed | authorization: Bearer secret                  | 405 POST
    )")) {
        const HttpResponse response = respond(row[0], row[1], row[2]);
        std::string text = response.status == 401 ? summary(response) : std::to_string(response.status);
        int policies = 0;
        for (const auto& [name, value] : response.headers) {
            policies += name == "Content-Security-Policy" && value.rfind("default-src 'none'", 0) == 0;
            text += name == "Allow" || name == "Location" ? " " + value : "";
        }
        EXPECT_EQ(text, row[3]) << row[0] << " " << row[1] << " " << row[2];
        EXPECT_EQ(policies, 1) << row[1];
    }
    m_token.reset();
    m_listen = "0.0.0.0";
    EXPECT_EQ(respond("GET", "/api/v1/lists/missed", "host: 192.0.2.1:80").status, 200);
    EXPECT_EQ(respond("GET", "/api/v1/lists/missed", "host: evil.example").status, 403);
}

TEST_F(RequestPipelineTest, GrantsEachTokenItsScopeUntilItEnds) {
    using std::chrono::system_clock;
    for (const char* const path : {"/metrics", "/settings"}) {
        const host::Scope scope = path[1] == 'm' ? host::Scope::eMetrics : host::Scope::eAdmin;
        m_router.add({"GET", path, scope, [](const auto&) { return HttpResponse(); }});
    }
    host::AccessTokens::Failure failure{};
    std::map<std::string, std::string> secrets;
    std::map<std::string, std::int64_t> ids;
    const auto create = [&](const char* name, host::Scope scope, const char* line, int seconds) {
        const auto expires =
            std::chrono::floor<std::chrono::seconds>(system_clock::now()) + std::chrono::seconds(seconds);
        const auto created = m_tokens.create({0, name, scope, line, {}, expires}, failure);
        ASSERT_TRUE(created);
        secrets[name] = created->secret;
        ids[name] = created->token.id;
    };
    create("metrics", host::Scope::eMetrics, "", 60);
    create("read", host::Scope::eRead, "2001", 60);
    create("write", host::Scope::eWrite, "", 60);
    create("admin", host::Scope::eAdmin, "", 60);
    create("expired", host::Scope::eAdmin, "", 0);
    create("other", host::Scope::eAdmin, "2002", 60);
    create("revoked", host::Scope::eAdmin, "", 60);
    EXPECT_FALSE(m_tokens.create({0, "admin", host::Scope::eRead, "", {}, {}}, failure));
    EXPECT_EQ(failure, host::AccessTokens::Failure::eNameTaken);
    EXPECT_TRUE(m_tokens.isValid(ids["revoked"]));
    EXPECT_EQ(m_tokens.revoke(ids["revoked"]), true);
    EXPECT_EQ(m_tokens.revoke(ids["revoked"]), false);
    EXPECT_FALSE(m_tokens.isValid(ids["revoked"]));
    EXPECT_EQ(m_database.number("SELECT count(*) FROM access_token WHERE hash = '" + secrets["read"] + "'"),
              0);
    ASSERT_TRUE(m_tokens.load());
    for (const auto& row : journaltest::table(4, R"(
        metrics | GET    | /metrics                      | 200 -
        metrics | GET    | /api/v1/lists/missed          | 403 wrong-scope
        read    | GET    | /metrics                      | 200 -
        read    | HEAD   | /api/v1/lists/missed          | 200
        read    | DELETE | /api/v1/lists/missed?all=true | 403 wrong-scope
        read    | GET    | /settings                     | 403 wrong-scope
        write   | DELETE | /api/v1/lists/missed?all=true | 204 -
        write   | GET    | /settings                     | 403 wrong-scope
        admin   | GET    | /settings                     | 200 -
        expired | GET    | /settings                     | 401 wrong-token
        other   | GET    | /settings                     | 200 -
        other   | GET    | /api/v1/lines/2002/lists/missed | 200
        other   | GET    | /api/v1/lines/2001/lists/missed | 404 unknown-line
        other   | GET    | /api/v1/lines/2009/lists/missed | 404 unknown-line
        other   | GET    | /api/v1/lists/missed?line=2001  | 404 unknown-line
        other   | GET    | /api/v1/lines/2001               | 404 unknown-line
        other   | GET    | /api/v1/lines?all=true           | 403 wrong-scope
        other   | DELETE | /api/v1/lines/2002               | 403 wrong-line
        admin   | GET    | /api/v1/lines/2002/lists/missed | 200
        admin   | GET    | /api/v1/lines/2009/lists/missed | 404 unknown-line
        admin   | GET    | /api/v1/lines/2002/lists/missed?line=2001 | 400 two-lines
        revoked | GET    | /settings                     | 401 wrong-token
        read    | GET    | /nowhere                      | 404 not-found
    )")) {
        const HttpResponse response = respond(row[1], row[2], "authorization: Bearer " + secrets[row[0]]);
        EXPECT_EQ(summary(response).rfind(row[3], 0), 0U) << row[0] << " " << row[1] << " " << row[2];
        EXPECT_EQ(response.delay.count() > 0, response.status == 401) << row[0];
    }
}

TEST_F(RequestPipelineTest, ServesTheProxyAndPagesOfAllowedOrigins) {
    m_publicUrl = "https://Phone.example/journal/";
    m_origins = {"https://board.example"};
    m_router.add({"GET",
                  "/api/v1/events",
                  host::Scope::eRead,
                  [](const auto&) { return HttpResponse(); },
                  {"ticket"}});
    const auto now = host::Tickets::Clock::now();
    const host::Access reader{host::Scope::eRead, "", 0};
    const std::string ticket = m_tickets.issue(reader, now);
    const std::string old = m_tickets.issue(reader, now - host::Tickets::kLifetime);
    const std::string lists = "/api/v1/lists/missed";
    const std::string events = "/api/v1/events?ticket=";
    const std::string bearer = "; authorization: Bearer secret";
    const std::string board = "origin: https://board.example; sec-fetch-site: cross-site";
    struct Row {
        const char* method;
        std::string target;
        std::string headers;
        int status;
        bool isReadable;
    };
    for (const Row& row : {
             Row{"GET", lists, "host: phone.example; origin: https://phone.example" + bearer, 200, false},
             Row{"GET", lists, "host: phone.example:8443" + bearer, 200, false},
             Row{"GET", lists, "host: other.example" + bearer, 403, false},
             Row{"GET", lists, "host: phone.example; origin: https://other.example" + bearer, 403, false},
             Row{"GET", lists, board + bearer, 200, true},
             Row{"GET", lists, board + "; cookie: calljournal-80=secret", 401, true},
             Row{"GET", lists, "origin: http://board.example" + bearer, 403, false},
             Row{"OPTIONS", lists, board + "; access-control-request-method: DELETE", 204, true},
             Row{"OPTIONS", lists, "origin: https://other.example; access-control-request-method: GET", 403,
                 false},
             Row{"GET", lists + "?ticket=" + ticket, board, 401, true},
             Row{"GET", events + ticket, board, 200, true},
             Row{"GET", events + ticket, board, 401, true},
             Row{"GET", events + old, board, 401, true},
         }) {
        const HttpResponse response = respond(row.method, row.target, row.headers);
        const auto isAllowed = [](const auto& header) {
            return header.first == "Access-Control-Allow-Origin" && header.second == "https://board.example";
        };
        EXPECT_EQ(response.status, row.status) << row.target << " " << row.headers;
        EXPECT_EQ(std::any_of(response.headers.begin(), response.headers.end(), isAllowed), row.isReadable)
            << row.target << " " << row.headers;
    }
    const HttpResponse signedIn = respond("GET", "/?token=secret", "host: phone.example");
    const auto isSecure = [](const auto& header) { return header.second.ends_with("; Secure"); };
    EXPECT_TRUE(std::any_of(signedIn.headers.begin(), signedIn.headers.end(), isSecure));
}

TEST_F(RequestPipelineTest, SendsFilesOnceAndCompressed) {
    std::filesystem::create_directory(m_directory.path() / "assets");
    std::ofstream(m_directory.path() / "assets/b.js") << "long script";
    std::ofstream(m_directory.path() / "assets/b.js.gz") << "packed";
    const auto headersOf = [](const HttpResponse& response) {
        return std::map<std::string, std::string>(response.headers.begin(), response.headers.end());
    };
    const std::string plain = headersOf(respond("GET", "/assets/b.js", ""))["ETag"];
    const std::string packed = headersOf(respond("GET", "/assets/b.js", "accept-encoding: br, gzip"))["ETag"];
    for (const auto& row : journaltest::table(4, R"(
        /assets/b.js    | br                 |                     | 200 long script
        /assets/b.js    | gzip               |                     | 200 packed gzip
        /assets/b.js    | deflate,gzip;q=0.5 |                     | 200 packed gzip
        /assets/b.js    | gzip;q=0.0, xgzip  |                     | 200 long script
        /assets/b.js    | gzip               | PLAIN               | 200 packed gzip
        /assets/b.js    | gzip               | "x", W/PACKED       | 304 packed gzip
        /assets/b.js    |                    | PLAIN               | 304 long script
        /assets/b.js    |                    | *                   | 304 long script
        /a.js           | gzip               | PLAIN               | 200 script
        /assets/b.js.gz | gzip               |                     | 401 no-token
    )")) {
        std::string match = row[2];
        for (const auto& [name, tag] : {std::pair("PLAIN", plain), std::pair("PACKED", packed)}) {
            const std::size_t at = match.find(name);
            match = at == std::string::npos ? match : match.replace(at, std::string(name).size(), tag);
        }
        const HttpResponse response = respond("GET", row[0],
                                              (row[1].empty() ? "" : "accept-encoding: " + row[1] + ";") +
                                                  (match.empty() ? "" : "if-none-match: " + match));
        auto headers = headersOf(response);
        const std::string coding = headers["Content-Encoding"];
        EXPECT_EQ(response.status == 401 ? summary(response)
                                         : std::to_string(response.status) + " " + response.body +
                                               (coding.empty() ? "" : " " + coding),
                  row[3])
            << row[0] << row[1] << row[2];
        EXPECT_EQ(headers["Cache-Control"], response.status == 401 ? "no-store"
                                            : row[0] == "/a.js"    ? "no-cache"
                                                                   : "public, max-age=31536000, immutable");
        EXPECT_EQ(headers["Vary"], row[0] == "/assets/b.js" ? "Accept-Encoding" : "");
    }
}

TEST_F(RequestPipelineTest, GivesABrowserACookieForTheTokenAndTakesItBack) {
    const std::string attributes = "; HttpOnly; SameSite=Strict";
    for (const auto& row : journaltest::table(5, R"(
        POST   | {"token": "secret"} |                             | 204 - | secret; Path=/; Max-Age=31536000
        DELETE |                     |                             | 204 - | ; Path=/; Max-Age=0
        POST   | {"token": "secreT"} |                             | 401 wrong-token    |
        POST   | {"token": ""}       |                             | 401 wrong-token    |
        POST   | {"token": "secret"} | origin: http://evil.example | 403 foreign-origin |
        POST   | {"token": "secret"} | sec-fetch-site: same-site   | 403 foreign-origin |
    )")) {
        const HttpResponse response = respond(row[0], "/api/v1/session", row[2], row[1]);
        EXPECT_EQ(summary(response), row[3]) << row[1] << row[2];
        std::string cookie;
        for (const auto& [name, value] : response.headers) {
            cookie += name == "Set-Cookie" ? value : "";
        }
        EXPECT_EQ(cookie, row[4].empty() ? "" : "calljournal-80=" + row[4] + attributes) << row[1] << row[2];
    }
    m_token.reset();
    EXPECT_EQ(respond("POST", "/api/v1/session", "", R"({"token": "any"})").status, 204);
}

TEST_F(RequestPipelineTest, LogsNoPartOfAnAddressThatAClientChooses) {
    m_router.add({"GET", "/notes/{number}", host::Scope::eRead,
                  [](const auto&) -> HttpResponse { throw std::runtime_error("no note of 4712"); }});
    for (const auto& row : journaltest::table(2, R"(
        shown  | GET /notes/49891234567 failed: no note of 4712
        masked | GET /notes/{number} failed: no note of **12
        )")) {
        journaltest::CapturedLog::reset();
        host::setLoggedParties(row[0] == "shown" ? host::Parties::eShown : host::Parties::eMasked);
        respond("GET", "/notes/49891234567", "authorization: Bearer secret");
        EXPECT_THAT(journaltest::CapturedLog::lines("HTTP"), testing::ElementsAre(row[1]));
    }
    host::setLoggedParties(host::Parties::eShown);
}

TEST_F(RequestPipelineTest, CallsTheOperationOfTheJournal) {
    for (const auto& row : journaltest::table(5, R"(
        GET    | missed                    |                     | 200 3/2 Ann Bob Anna |
        GET    | missed?limit=1&offset=1   |                     | 200 3/2 Bob          |
        GET    | missed?search=ANN&limit=9 |                     | 200 2/2 Ann Anna     |
        GET    | missed/%42ob              |                     | 200 Bob              |
        GET    | missed/2                  |                     | 200 Bob              |
        GET    | dialled/2                 |                     | 404 unknown-entry    |
        DELETE | missed/Bo                 |                     | 404 unknown-entry    |
        DELETE | missed/Bob                |                     | 503 database         | deleteMissedCall(Bob, false)
        DELETE | missed/2                  |                     | 503 database         | deleteMissedCall(Bob, false)
        GET    | missed/Bob?limit=1        |                     | 400 unknown-parameter  |
        GET    | missed?limit=1&limit=1    |                     | 400 repeated-parameter |
        DELETE | callbacks?all=true&       |                     | 204 -                | deleteCallBackList()
        DELETE | missed                    | {"entryIds": ["Ann", "1"]} | 503 database  | deleteMissedCallList({Ann, Anna})
        DELETE | received?entryIds=b,%61   |                     | 204 -                |
        DELETE | dialled                   |                     | 400 wrong-selection  |
        DELETE | dialled?all=1             |                     | 400 wrong-selection  |
        DELETE | dialled?all=true          | {"entryIds": ["b"]} | 400 wrong-selection  |
        DELETE | dialled?entryIds=b        | {"entryIds": ["b"]} | 400 wrong-selection  |
        DELETE | dialled?all=true&entryIds=b |                   | 400 wrong-selection  |
        DELETE | dialled?entryIds=b,,c     |                     | 400 wrong-selection  |
        DELETE | dialled?entryIds=         |                     | 400 wrong-selection  |
        DELETE | dialled?al=true           | {"entryIds": ["b"]} | 400 unknown-parameter |
        DELETE | dialled                   | {}                  | 400 wrong-shape      |
        POST   | missed/viewed             | {"entryIds": ["Ann", "x"]} | 503 database  | setMissedCallListAsViewed({Ann})
    )")) {
        const std::size_t before = m_journal.calls().size();
        EXPECT_EQ(summary(respond(row[0], "/api/v1/lists/" + row[1], "authorization: Bearer secret", row[2])),
                  row[3])
            << row[1] << row[2];
        const auto calls = m_journal.calls();
        EXPECT_EQ(calls.size() > before ? calls[before] : "", row[4]) << row[1] << row[2];
    }
    EXPECT_EQ(m_resyncs, 1) << "the one list without entry ids";
}

}  // namespace
