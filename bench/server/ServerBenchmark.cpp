// Measures the start of a server, and the reads of one client:
//   server_benchmark --data DIR -- COMMAND...
// COMMAND (`calljournal serve`) is started with `--listen`, `--data` and `--switch` appended. Prints one JSON
// object: the milliseconds until the server accepts a connection and until it has sent the list of received
// calls, and the medians of later reads.

#include <CLI/CLI.hpp>
#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <iostream>
#include <nlohmann/json.hpp>
#include <optional>
#include <stdexcept>
#include <string>
#include <system_error>
#include <thread>
#include <vector>

#include "bench/load/LoadSwitch.h"
#include "bench/load/ServerProcess.h"
#include "bench/server/HttpConnection.h"

namespace {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr auto kLimit = std::chrono::seconds(20);
constexpr const char* kList = "/api/v1/lists/received?limit=1000";
constexpr const char* kPage = "/api/v1/calls?limit=50";

struct StartTimes {
    Milliseconds listening{0};
    Milliseconds served{0};
};

/// Connects and reads the list as soon as the server allows it. A server that reserves its address before it
/// serves it may close a connection.
StartTimes awaitFirstList(Clock::time_point begin, std::uint16_t port, const std::filesystem::path& data) {
    StartTimes times;
    while (Clock::now() < begin + kLimit) {
        try {
            bench::HttpConnection connection(port, data);
            times.listening = Clock::now() - begin;
            if (const std::optional<std::string> response = connection.get(kList)) {
                times.served = Clock::now() - begin;
                return times;
            }
        } catch (const std::system_error&) {
            std::this_thread::sleep_for(std::chrono::microseconds(200));
        }
    }
    throw std::runtime_error("the server sends no list");
}

Milliseconds medianOfReads(bench::HttpConnection& connection, const std::string& path, int reads) {
    std::vector<Milliseconds> times;
    for (int read = 0; read < reads; ++read) {
        const auto begin = Clock::now();
        const std::optional<std::string> response = connection.get(path);
        times.emplace_back(Clock::now() - begin);
        if (!response || response->find(" 200 ") == std::string::npos) {
            throw std::runtime_error("no response to " + path);
        }
    }
    std::sort(times.begin(), times.end());
    return times.at(times.size() / 2);
}

nlohmann::json measure(std::vector<std::string> command, const std::filesystem::path& data, int reads) {
    const std::uint16_t port = bench::freePort();
    command.insert(command.end(), {"--listen", "127.0.0.1:" + std::to_string(port)});
    const bench::LoadSwitch callSwitch;  // accepts the connection of the server, and never responds
    const auto begin = Clock::now();
    const bench::ServerProcess server(command, data, callSwitch.address());
    const StartTimes start = awaitFirstList(begin, port, data);
    bench::HttpConnection connection(port, data);
    return {{"listening-ms", start.listening.count()},
            {"first-list-ms", start.served.count()},
            {"list-ms", medianOfReads(connection, kList, reads).count()},
            {"page-ms", medianOfReads(connection, kPage, reads).count()}};
}

}  // namespace

int main(int count, char** arguments) {
    CLI::App app("Measures the start of a server, and the reads of one client.");
    std::filesystem::path data;
    std::vector<std::string> command;
    int reads = 50;
    app.add_option("--data", data, "the directory of the server's data, which it has used before")
        ->required();
    app.add_option("--reads", reads, "how often the list and a page are read")->check(CLI::PositiveNumber);
    app.add_option("command", command, "the server")->required();
    CLI11_PARSE(app, count, arguments);
    try {
        std::cout << measure(command, data, reads).dump() << std::endl;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "server_benchmark: %s\n", error.what());
        return 1;
    }
    return 0;
}
