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
#include <semaphore>
#include <thread>
#include <vector>

#include "host/data/Database.h"
#include "host/directory/Phonebook.h"
#include "host/http/ApiToken.h"
#include "host/http/Metrics.h"
#include "host/http/OpenApi.h"
#include "host/http/Router.h"
#include "host/management/LocalManagement.h"
#include "tests/support/FakeDigits.h"
#include "tests/support/FakeJournalService.h"
#include "tests/support/TemporaryDatabase.h"

namespace {

class HttpApiTest : public testing::Test {
protected:
    host::HttpBackend backend() {
        return {"2001", m_journal, m_management, m_phonebook, *m_database, m_metrics, {}, {}};
    }
    static host::HttpApiSettings at(const host::Endpoint& endpoint) {
        host::HttpApiSettings settings;
        settings.server.listen = endpoint;
        return settings;
    }

    static asio::ip::tcp::endpoint address(const host::Endpoint& endpoint) {
        return {asio::ip::make_address(endpoint.host), endpoint.port};
    }

    /// True if a small request gets a response within twenty seconds.
    static bool isServed(asio::io_context& io, asio::ip::tcp::socket& socket,
                         const std::string& target = "/api/v1/openapi.json") {
        asio::write(socket, asio::buffer("HEAD " + target + " HTTP/1.1\r\nHost: localhost\r\n\r\n"));
        std::string text;
        asio::async_read_until(socket, asio::dynamic_buffer(text), "\r\n\r\n",
                               [](const auto& /*error*/, std::size_t /*size*/) {});
        io.restart();
        io.run_for(std::chrono::seconds(20));
        return text.rfind("HTTP/1.1 200", 0) == 0;
    }

    journaltest::TemporaryDatabase m_database;
    journaltest::FakeDigits m_digits;
    journaltest::FakeJournalService m_journal;
    host::Phonebook m_phonebook{*m_database, m_digits, "2001"};
    host::LocalManagement m_management{
        *m_database, "2001", {}, {}, [](const std::function<void()>& /*work*/) {}};
    host::Metrics m_metrics{"2001"};
    host::HttpApi m_api{backend(), at({"127.0.0.1", 0})};
};

TEST_F(HttpApiTest, HasExactlyTheRoutesOfItsDescription) {
    const auto paths = nlohmann::json::parse(host::openApiResponse().body).at("paths");
    std::size_t described = 0;
    for (const auto& methods : paths) {
        described += methods.size() - methods.count("parameters");
    }
    EXPECT_EQ(described, m_api.routes().routes().size());
    for (const auto& route : m_api.routes().routes()) {
        std::string method = route.method;
        std::for_each(method.begin(), method.end(), [](char& letter) { letter |= ' '; });
        EXPECT_TRUE(paths.value(route.pattern, nlohmann::json()).contains(method)) << method << route.pattern;
    }
}

TEST_F(HttpApiTest, StopsWithOpenConnectionsAndDoesNotShareItsAddress) {
    const host::Endpoint endpoint = m_api.start();
    EXPECT_EQ(m_journal.observers().size(), 2U);
    EXPECT_THROW(host::HttpApi(backend(), at(endpoint)), host::HttpServerError);
    EXPECT_NO_THROW(host::HttpApi(backend(), at({"localhost", 0})));

    asio::io_context io;
    asio::ip::tcp::socket stream(io);
    asio::ip::tcp::socket half(io);
    for (asio::ip::tcp::socket* const each : {&stream, &half}) {
        each->connect(address(endpoint));
    }
    asio::write(half,
                asio::buffer(std::string("PUT / HTTP/1.1\r\nHost: localhost\r\nContent-Length: 9\r\n\r\n{")));
    asio::write(stream, asio::buffer(std::string("GET /api/v1/events HTTP/1.1\r\nHost: localhost\r\n\r\n")));
    asio::streambuf text;
    asio::read_until(stream, text, "retry: 2000\n");
    m_api.stop();
    for (asio::ip::tcp::socket* const each : {&stream, &half}) {
        asio::error_code error;
        asio::read(*each, text, error);
        EXPECT_TRUE(error);
    }
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
    const auto there = address(m_api.start());
    asio::io_context io;
    std::vector<asio::ip::tcp::socket> clients;
    const std::string request = "GET /api/v1/lists/missed HTTP/1.1\r\nHost: localhost\r\n\r\n";
    for (int each = 1; each <= kWorkers; ++each) {
        clients.emplace_back(io).connect(there);
        // The last one sends a second request, which no worker is free for.
        asio::write(clients.back(), asio::buffer(each < kWorkers ? request : request + request));
        begun.acquire();
    }
    std::thread lastVisitor([&io, &mayEnd, there] {
        asio::error_code refused;
        while (!refused) {
            asio::ip::tcp::socket(io).connect(there, refused);
        }
        mayEnd.release(kWorkers + 1);
    });
    m_api.stop();
    lastVisitor.join();
    EXPECT_FALSE(begun.try_acquire());
    for (asio::ip::tcp::socket& each : clients) {
        std::string text;
        asio::error_code cutOff;
        asio::read(each, asio::dynamic_buffer(text), cutOff);
        EXPECT_EQ(text.rfind("HTTP/1.1 200"), 0U) << "exactly one response";
    }
}

TEST_F(HttpApiTest, BlocksAtMostOneHealthCheckWhenTheDatabaseIsSlow) {
    std::counting_semaphore<> trying(0);
    std::counting_semaphore<> mayEnd(0);
    m_database->setWriteListener([&trying, &mayEnd](auto /*time*/) {
        trying.release();
        mayEnd.acquire();
    });
    const auto there = address(m_api.start());
    asio::io_context io;
    asio::ip::tcp::socket first(io);
    asio::ip::tcp::socket second(io);
    first.connect(there);
    second.connect(there);
    asio::write(first, asio::buffer(std::string("GET /healthz HTTP/1.1\r\nHost: localhost\r\n\r\n")));
    trying.acquire();
    EXPECT_TRUE(isServed(io, second, "/healthz"));
    mayEnd.release(2);
    m_api.stop();
}

TEST_F(HttpApiTest, DisconnectsIdleClientsForOthers) {
    host::HttpApiSettings settings = at({"127.0.0.1", 0});
    settings.server.maxConnections = 3;
    settings.server.clientTime = std::chrono::seconds(1);
    host::HttpApi api(backend(), settings);
    const auto there = address(api.start());
    asio::io_context io;
    std::vector<asio::ip::tcp::socket> idle;
    for (const char* const begin : {"", "GET / HT", "GET / HTTP/1.1\r\nHost: local"}) {
        idle.emplace_back(io).connect(there);
        asio::write(idle.back(), asio::buffer(std::string(begin)));
    }
    asio::ip::tcp::socket last(io);
    last.connect(there);
    EXPECT_TRUE(isServed(io, last));
}

TEST_F(HttpApiTest, AcceptsAgainAfterDescriptorsRanOut) {
    host::HttpApiSettings settings = at({"127.0.0.1", 0});
    settings.server.heartbeat = std::chrono::milliseconds(20);
    host::HttpApi api(backend(), settings);
    const auto there = address(api.start());
    asio::io_context io;
    asio::ip::tcp::socket first(io);
    asio::ip::tcp::socket second(io, asio::ip::tcp::v4());
    first.connect(there);
    EXPECT_TRUE(isServed(io, first));

    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &before), 0);
    rlimit none = before;
    const int free = dup(0);
    none.rlim_cur = static_cast<rlim_t>(free);
    close(free);
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &none), 0);
    second.connect(there);
    // The response comes after the attempt to accept the second one.
    EXPECT_TRUE(isServed(io, first));
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &before), 0);
    EXPECT_TRUE(isServed(io, second));
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
}

}  // namespace
