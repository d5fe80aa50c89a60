// Measures how long a server takes to start:
//   start_benchmark --data DIR -- COMMAND...
// COMMAND (`calljournal serve`) is started with `--listen`, `--data` and `--switch` appended. Prints one JSON
// object: the milliseconds until the server accepts a connection, and until it has sent the list of received
// calls.

#include <arpa/inet.h>
#include <poll.h>
#include <sys/socket.h>

#include <CLI/CLI.hpp>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "bench/load/LoadSwitch.h"
#include "bench/load/ServerProcess.h"
#include "bench/load/SystemCall.h"
#include "host/framework/FileDescriptor.h"

namespace {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr auto kLimit = std::chrono::seconds(20);

host::FileDescriptor makeSocket() {
    return host::FileDescriptor(bench::checked(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0), "socket"));
}

sockaddr_in loopback(std::uint16_t port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(port);
    return address;
}

/// A port that no server uses at the moment.
std::uint16_t freePort() {
    const host::FileDescriptor socket = makeSocket();
    sockaddr_in address = loopback(0);
    socklen_t size = sizeof address;
    bench::checked(::bind(socket.get(), reinterpret_cast<const sockaddr*>(&address), size), "bind");
    bench::checked(::getsockname(socket.get(), reinterpret_cast<sockaddr*>(&address), &size), "getsockname");
    return ntohs(address.sin_port);
}

/// Connects as soon as the server accepts it.
host::FileDescriptor connectWhenListening(std::uint16_t port) {
    const sockaddr_in address = loopback(port);
    const auto end = Clock::now() + kLimit;
    while (Clock::now() < end) {
        host::FileDescriptor socket = makeSocket();
        if (::connect(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) {
            return socket;
        }
        std::this_thread::sleep_for(std::chrono::microseconds(200));
    }
    throw std::runtime_error("the server does not listen");
}

/// Sends the request and reads the response to its end; returns the response, or an empty text if the server
/// closes the connection, as one does that reserves its address before it serves it.
std::string responseTo(const host::FileDescriptor& socket, const std::string& request) {
    std::string response;
    std::array<char, 65536> chunk;
    ssize_t count = ::send(socket.get(), request.data(), request.size(), MSG_NOSIGNAL);
    while (count > 0) {
        count = ::recv(socket.get(), chunk.data(), chunk.size(), 0);
        response.append(chunk.data(), count > 0 ? static_cast<std::size_t>(count) : 0);
    }
    return count == 0 ? response : "";
}

nlohmann::json measure(std::vector<std::string> command, const std::filesystem::path& data) {
    std::string token;
    std::ifstream(data / "api-token") >> token;
    const std::string port = std::to_string(freePort());
    const std::string host = "127.0.0.1:" + port;
    command.insert(command.end(), {"--listen", host});
    const bench::LoadSwitch callSwitch;  // accepts the connection of the server, and never responds

    const auto begin = Clock::now();
    const bench::ServerProcess server(command, data, callSwitch.address());
    const std::string request = "GET /api/v1/lists/received HTTP/1.1\r\nHost: " + host +
                                "\r\nAuthorization: Bearer " + token + "\r\nConnection: close\r\n\r\n";
    Milliseconds listening{0};
    std::string response;
    while (response.empty() && Clock::now() < begin + kLimit) {
        const host::FileDescriptor socket = connectWhenListening(static_cast<std::uint16_t>(std::stoi(port)));
        listening = Clock::now() - begin;
        response = responseTo(socket, request);
    }
    const Milliseconds served = Clock::now() - begin;
    if (response.find(" 200 ") == std::string::npos) {
        throw std::runtime_error("no list: " + response.substr(0, 200));
    }
    return {{"listening-ms", listening.count()},
            {"first-list-ms", served.count()},
            {"response-bytes", response.size()}};
}

}  // namespace

int main(int count, char** arguments) {
    CLI::App app("Measures how long a server takes to start.");
    std::filesystem::path data;
    std::vector<std::string> command;
    app.add_option("--data", data, "the directory of the server's data, which it has used before")
        ->required();
    app.add_option("command", command, "the server")->required();
    CLI11_PARSE(app, count, arguments);
    try {
        std::cout << measure(command, data).dump() << std::endl;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "start_benchmark: %s\n", error.what());
        return 1;
    }
    return 0;
}
