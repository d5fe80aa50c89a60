// Measures the start of a server, and the reads of one client:
//   server_benchmark --data DIR -- COMMAND...
// COMMAND (`calljournal serve`) is started with `--listen`, `--data` and `--switch` appended. Prints one JSON
// object: the milliseconds until the server accepts a connection and until it has sent the list of received
// calls, and the medians of later reads; among them those of a list after each change of one entry.

#include <CLI/CLI.hpp>
#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <iostream>
#include <nlohmann/json.hpp>
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
constexpr const char* kChanged = "/api/v1/lists/missed";
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
            if (connection.get(kList) != nullptr) {
                times.served = Clock::now() - begin;
                return times;
            }
        } catch (const std::system_error&) {
            std::this_thread::sleep_for(std::chrono::microseconds(200));
        }
    }
    throw std::runtime_error("the server sends no list");
}

const std::string& responseTo(bench::HttpConnection& connection, const std::string& path) {
    const std::string* const response = connection.get(path);
    if (response == nullptr || response->find(" 200 ") == std::string::npos) {
        throw std::runtime_error("no response to " + path);
    }
    return *response;
}

/// The median of several reads; `prepare` runs before each, outside the time.
template <typename Prepare>
Milliseconds medianOfReads(bench::HttpConnection& connection, const std::string& path, int reads,
                           Prepare prepare) {
    std::vector<Milliseconds> times;
    for (int read = 0; read < reads; ++read) {
        prepare(read);
        const auto begin = Clock::now();
        static_cast<void>(responseTo(connection, path));
        times.emplace_back(Clock::now() - begin);
    }
    std::sort(times.begin(), times.end());
    return times.at(times.size() / 2);
}

Milliseconds medianOfReads(bench::HttpConnection& connection, const std::string& path, int reads) {
    return medianOfReads(connection, path, reads, [](int) {});
}

/// The median of reads of a list after an entry in its middle has become viewed or unviewed.
Milliseconds medianAfterChanges(bench::HttpConnection& connection, int reads) {
    const std::string list = responseTo(connection, std::string(kChanged) + "?limit=1000");
    const std::string name = R"("entryId":")";
    const std::size_t begin = list.find(name, list.size() / 2) + name.size();
    const std::string entries =
        R"({"entryIds":[")" + list.substr(begin, list.find('"', begin) - begin) + R"("]})";
    return medianOfReads(connection, std::string(kChanged) + "?limit=1000", reads, [&](int read) {
        const std::string* const done =
            connection.post(std::string(kChanged) + (read % 2 == 0 ? "/viewed" : "/unviewed"), entries);
        if (done == nullptr || done->find(" 204 ") == std::string::npos) {
            throw std::runtime_error("no entry is changed");
        }
    });
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
            {"changed-list-ms", medianAfterChanges(connection, reads).count()},
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
