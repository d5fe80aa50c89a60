#include "host/http/HttpApi.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <asio/ip/tcp.hpp>
#include <asio/read.hpp>
#include <asio/read_until.hpp>
#include <asio/streambuf.hpp>
#include <asio/write.hpp>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <optional>
#include <semaphore>
#include <set>
#include <thread>
#include <vector>

#include "host/access/AccessTokens.h"
#include "host/csta/call-control/CallControlIfc.h"
#include "host/database/Database.h"
#include "host/digits/Dialling.h"
#include "host/digits/NumberTexts.h"
#include "host/directory/Phonebook.h"
#include "host/http/ApiToken.h"
#include "host/http/LineApi.h"
#include "host/http/Metrics.h"
#include "host/http/events/EventFeed.h"
#include "host/http/resources/OpenApi.h"
#include "host/line/ObserverFan.h"
#include "host/management/LocalManagement.h"
#include "host/stored-lists/StoredEntries.h"
#include "host/stored-lists/StoredLists.h"
#include "tests/support/FakeDigits.h"
#include "tests/support/FakeJournalService.h"
#include "tests/support/FakeLines.h"
#include "tests/support/TemporaryDatabase.h"

namespace {

using Socket = asio::ip::tcp::socket;

/// A line without a link.
class NoCalls final : public host::CallControlIfc {
public:
    host::CallControlOutcome makeCall(const std::string& /*number*/) override { return {}; }
    host::CallControlOutcome answerCall(const std::string& /*id*/) override { return {}; }
    host::CallControlOutcome clearCall(const std::string& /*id*/) override { return {}; }
    std::vector<host::LiveCallView> liveCalls() override { return {}; }
};

class HttpApiTest : public testing::Test {
protected:
    /// Starts the API; later clients of `connect` are its clients.
    host::Endpoint start() {
        m_api.emplace(backend(), m_settings);
        m_line.emplace(host::LineBackend{"2001",
                                         m_management,
                                         m_phonebook,
                                         *m_database,
                                         m_stored,
                                         m_entries,
                                         m_observers,
                                         m_calls,
                                         m_dialling,
                                         m_numbers,
                                         {}},
                       m_api->serverForLines());
        m_line->start();
        m_lines.set("2001", {&m_line->router(), [](auto* /*routes*/) {}});
        m_lines.setApi(&*m_line);
        host::Endpoint endpoint = m_api->start();
        m_address = {asio::ip::make_address(endpoint.host), endpoint.port};
        return endpoint;
    }
    host::HttpBackend backend() { return {m_lines, *m_database, m_metrics, {}, {}, {}}; }
    void stop() {
        m_line->endStreams();
        m_api->stop();
        m_line->stop();
    }

    /// A client that has sent this text.
    Socket connect(const std::string& text) {
        Socket client(m_io);
        client.connect(m_address);
        asio::write(client, asio::buffer(text));
        return client;
    }
    static std::string request(const std::string& methodAndTarget) {
        return methodAndTarget + " HTTP/1.1\r\nHost: localhost\r\n\r\n";
    }
    /// All that the client receives until its connection ends.
    static std::string receivedBy(Socket& client) {
        std::string text;
        asio::error_code end;
        asio::read(client, asio::dynamic_buffer(text), end);
        return text;
    }

    /// True if a small request gets a response within twenty seconds.
    bool isServed(Socket& client, const std::string& target = "/healthz") {
        asio::write(client, asio::buffer(request("HEAD " + target)));
        return headerOf(client).rfind("HTTP/1.1 200", 0) == 0;
    }

    /// The status and the headers that arrive within twenty seconds.
    std::string headerOf(Socket& client) {
        std::string text;
        asio::async_read_until(client, asio::dynamic_buffer(text), "\r\n\r\n",
                               [](auto /*error*/, auto /*size*/) {});
        m_io.restart();
        m_io.run_for(std::chrono::seconds(20));
        return text;
    }

    journaltest::TemporaryDatabase m_database;
    journaltest::FakeDigits m_digits;
    journaltest::FakeJournalService m_journal;
    host::Phonebook m_phonebook{*m_database, m_digits, "2001"};
    host::LocalManagement m_management{
        *m_database, "2001", {}, {}, [](const std::function<void()>& /*work*/) {}};
    host::StoredLists m_stored{*m_database, "2001"};
    host::StoredEntries m_entries{{m_journal, *m_database, "2001", nullptr, {}}};
    NoCalls m_calls;
    const host::Dialling m_dialling{{}};
    host::NumberTexts m_numbers{"DE", m_digits};
    host::Metrics m_metrics{"1.2.3"};
    host::ObserverFan m_observers;
    journaltest::FakeLines m_lines;
    asio::io_context m_io;
    asio::ip::tcp::endpoint m_address;
    host::HttpApiSettings m_settings{{{"127.0.0.1", 0}}, {}, {}, {}, {}};
    std::optional<host::HttpApi> m_api;
    std::optional<host::LineApi> m_line;
};

TEST_F(HttpApiTest, StopsWithOpenConnectionsAndDoesNotShareItsAddress) {
    m_settings.server.listen = start();
    EXPECT_THROW(host::HttpApi(backend(), m_settings), host::HttpServerError);
    m_settings.server.listen = {"localhost", 0};
    EXPECT_NO_THROW(host::HttpApi(backend(), m_settings));

    Socket half = connect("PUT / HTTP/1.1\r\nHost: localhost\r\nContent-Length: 9\r\n\r\n{");
    Socket stream = connect(request("GET /api/v1/events"));
    asio::streambuf text;
    asio::read_until(stream, text, "retry: 2000\n");
    stop();
    receivedBy(half);
    receivedBy(stream);
}

TEST_F(HttpApiTest, StopsAfterTheRunningRequestsAndBeginsNoWaitingOne) {
    constexpr int kWorkers = 4;
    std::counting_semaphore<> begun(0);
    std::counting_semaphore<> mayEnd(0);
    m_journal.setDuring([&begun, &mayEnd, owner = std::this_thread::get_id()] {
        if (std::this_thread::get_id() != owner) {
            begun.release();
            mayEnd.acquire();
        }
    });
    start();
    std::vector<Socket> clients;
    const std::string clear = request("DELETE /api/v1/lists/callbacks?all=true");
    for (int each = 1; each <= kWorkers; ++each) {
        // The last one sends a second request, which no worker is free for.
        clients.push_back(connect(each < kWorkers ? clear : clear + clear));
        begun.acquire();
    }
    std::thread lastVisitor([this, &mayEnd] {
        asio::error_code refused;
        while (!refused) {
            Socket(m_io).connect(m_address, refused);
        }
        mayEnd.release(kWorkers + 1);
    });
    stop();
    lastVisitor.join();
    EXPECT_FALSE(begun.try_acquire());
    for (Socket& each : clients) {
        EXPECT_EQ(receivedBy(each).rfind("HTTP/1.1 204"), 0U) << "exactly one response";
    }
}

TEST_F(HttpApiTest, BlocksAtMostOneHealthCheckWhenTheDatabaseIsSlow) {
    std::counting_semaphore<> trying(0);
    std::counting_semaphore<> mayEnd(0);
    m_database->setWriteListener([&trying, &mayEnd](auto /*time*/, auto /*calls*/) {
        trying.release();
        mayEnd.acquire();
    });
    start();
    const Socket first = connect(request("GET /healthz"));
    trying.acquire();
    Socket second = connect("");
    EXPECT_TRUE(isServed(second, "/healthz"));
    mayEnd.release(2);
    stop();
}

TEST_F(HttpApiTest, DescribesEveryRouteWithItsParametersAndScope) {
    std::set<std::string> served;
    start();
    std::vector<host::Router::Route> routes = m_api->routes();
    routes.insert(routes.end(), m_line->router().routes().begin(), m_line->router().routes().end());
    for (const host::Router::Route& route : routes) {
        std::set<std::string> names(route.queryParameters.begin(), route.queryParameters.end());
        if (route.pattern.starts_with("/api/v1/")) {
            names.insert("line");
        }
        served.insert(route.method + " " + route.pattern + " " + testing::PrintToString(names) + " " +
                      std::string(host::wordOf(route.scope)));
    }
    std::set<std::string> described;
    const auto document = nlohmann::json::parse(host::openApiResponse().body);
    const auto add = [&document](std::set<std::string>& names, const nlohmann::json& operation) {
        for (nlohmann::json parameter : operation.value("parameters", nlohmann::json::array())) {
            if (parameter.contains("$ref")) {
                const std::string reference = parameter["$ref"];
                parameter = document.at(nlohmann::json::json_pointer(reference.substr(1)));
            }
            if (parameter.at("in") == "query") {
                names.insert(parameter.at("name").get<std::string>());
            }
        }
    };
    for (const auto& [path, methods] : document.at("paths").items()) {
        for (const auto& [method, operation] : methods.items()) {
            std::set<std::string> names;
            add(names, methods);
            if (method != "parameters") {
                add(names, operation);
                std::string upper = method;
                std::transform(upper.begin(), upper.end(), upper.begin(), ::toupper);
                const auto& security = operation.at("security");
                const std::string scope = security.empty() ? "" : security.at(0).at("token").at(0);
                described.insert(upper + " " + path + " " + testing::PrintToString(names) + " " + scope);
            }
        }
    }
    EXPECT_EQ(described, served);
}

TEST_F(HttpApiTest, KeepsATokenOfOneLineFromEveryRouteOfOthersAndOfAll) {
    m_settings.token = "secret";
    host::AccessTokens tokens(*m_database);
    host::AccessTokens::Failure failure{};
    const auto created = tokens.create({0, "other", host::Scope::eAdmin, "2002", {}, {}}, failure);
    ASSERT_TRUE(created);
    start();
    m_lines.set("2002", {&m_line->router(), [](auto* /*routes*/) {}});
    // A client of one line may use these besides its line: they show that line only, or nothing of any.
    const std::set<std::string> harmless{"/api/v1/lines", "/api/v1/lines/{device}", "/api/v1/tickets"};
    std::set<std::string> ofLines;
    for (const host::Router::Route& route : m_line->router().routes()) {
        ofLines.insert(route.pattern);
    }
    const auto document = nlohmann::json::parse(host::openApiResponse().body);
    for (const auto& [path, methods] : document.at("paths").items()) {
        for (const auto& [method, operation] : methods.items()) {
            if (method == "parameters" || operation.at("security").empty()) {
                continue;
            }
            std::string upper = method;
            std::transform(upper.begin(), upper.end(), upper.begin(), ::toupper);
            const auto responseTo = [&](const std::string& target) {
                Socket client = connect(upper + " " + target +
                                        " HTTP/1.1\r\nHost: localhost\r\nConnection: close\r\n"
                                        "Authorization: Bearer " +
                                        created->secret + "\r\nContent-Length: 2\r\n\r\n{}");
                return receivedBy(client);
            };
            if (ofLines.contains(path)) {
                const std::string rest = path.substr(std::string("/api/v1").size());
                EXPECT_NE(responseTo("/api/v1/lines/2001" + rest).find("unknown-line"), std::string::npos)
                    << upper << " " << path;
                EXPECT_NE(responseTo(path + "?line=2001").find("unknown-line"), std::string::npos)
                    << upper << " " << path;
            } else if (!harmless.contains(path) || upper == "DELETE" || path + upper == "/api/v1/linesPOST") {
                EXPECT_NE(responseTo(path).find("wrong-line"), std::string::npos) << upper << " " << path;
            }
        }
    }
}

TEST_F(HttpApiTest, DisconnectsIdleClientsForOthers) {
    m_settings.token = "secret";
    m_settings.server.maxAnonymousOfOneAddress = 3;
    start();
    Socket trusted = connect(
        "HEAD /api/v1/openapi.json HTTP/1.1\r\nHost: localhost\r\n"
        "Authorization: Bearer secret\r\n\r\n");
    EXPECT_EQ(headerOf(trusted).rfind("HTTP/1.1 200", 0), 0U);
    std::vector<Socket> clients;
    for (const char* const begin : {"", "GET / HT", "GET / HTTP/1.1\r\nHost: local", ""}) {
        clients.push_back(connect(begin));
    }
    EXPECT_EQ(receivedBy(clients.front()), "");  // the one that was idle for the longest time
    EXPECT_TRUE(isServed(clients.back()));
    EXPECT_TRUE(isServed(trusted));
}

TEST_F(HttpApiTest, FreesThePlacesOfStreamsWhenTheirClientsDisconnect) {
    start();
    const std::string request = HttpApiTest::request("GET /api/v1/events");
    std::vector<Socket> streams;
    for (std::size_t number = 0; number < host::EventFeed::kMaxStreams; ++number) {
        streams.push_back(connect(request));
        ASSERT_EQ(headerOf(streams.back()).rfind("HTTP/1.1 200", 0), 0U);
    }
    Socket refused = connect(request);
    EXPECT_EQ(headerOf(refused).rfind("HTTP/1.1 503", 0), 0U);

    streams.clear();
    // The server notices it long before the next heartbeat.
    const auto deadline = std::chrono::steady_clock::now() + m_settings.server.heartbeat / 3;
    std::string header;
    while (header.rfind("HTTP/1.1 200", 0) != 0 && std::chrono::steady_clock::now() < deadline) {
        Socket next = connect(request);
        header = headerOf(next);
    }
    EXPECT_EQ(header.rfind("HTTP/1.1 200", 0), 0U);
}

TEST_F(HttpApiTest, AcceptsAgainAfterDescriptorsRanOut) {
    m_settings.server.heartbeat = std::chrono::milliseconds(20);
    start();
    Socket first = connect("");
    Socket second(m_io, asio::ip::tcp::v4());
    EXPECT_TRUE(isServed(first));

    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &before), 0);
    rlimit none = before;
    const int free = dup(0);
    none.rlim_cur = static_cast<rlim_t>(free);
    close(free);
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &none), 0);
    second.connect(m_address);
    // The response comes after the attempt to accept the second one.
    EXPECT_TRUE(isServed(first));
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &before), 0);
    EXPECT_TRUE(isServed(second));
}

TEST(ApiToken, IsCreatedOnceForItsOwnerOnlyAndADamagedFileIsRefused) {
    const TemporaryDirectory directory;
    const std::filesystem::path file = directory.path() / "api-token";
    const std::string token = host::apiToken(file);
    std::filesystem::permissions(file, std::filesystem::perms::all);
    EXPECT_EQ(host::apiToken(file), token);
    EXPECT_EQ(static_cast<int>(std::filesystem::status(file).permissions()), 0600);
    std::ofstream(file) << "short\n";
    EXPECT_THROW(static_cast<void>(host::apiToken(file)), std::runtime_error);
    std::filesystem::remove(file);
    static_cast<void>(host::apiToken(file));
    if (geteuid() == 0) {  // only root can give a file to another user
        ASSERT_EQ(chown(file.c_str(), 1, 1), 0);
        EXPECT_THROW(static_cast<void>(host::apiToken(file)), std::runtime_error);
    }
}

}  // namespace
