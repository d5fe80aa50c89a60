#include "bench/server/HttpConnection.h"

#include <arpa/inet.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

#include <array>
#include <cstdlib>
#include <fstream>
#include <optional>
#include <string_view>

#include "bench/load/SystemCall.h"

namespace bench {

namespace {

constexpr std::string_view kHeaderEnd = "\r\n\r\n";
constexpr std::string_view kLength = "Content-Length: ";

host::FileDescriptor makeSocket() {
    return host::FileDescriptor(checked(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0), "socket"));
}

sockaddr_in loopback(std::uint16_t port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(port);
    return address;
}

/// The size of the response that begins with `received`; std::nullopt before its header is complete.
std::optional<std::size_t> sizeOf(const std::string& received) {
    const std::size_t end = received.find(kHeaderEnd);
    if (end == std::string::npos) {
        return std::nullopt;
    }
    const std::size_t length = received.find(kLength);
    const std::size_t body =
        length < end ? std::strtoull(received.c_str() + length + kLength.size(), nullptr, 10) : 0;
    return end + kHeaderEnd.size() + body;
}

}  // namespace

HttpConnection::HttpConnection(std::uint16_t port, const std::filesystem::path& data)
    : m_socket(makeSocket()) {
    const sockaddr_in address = loopback(port);
    checked(::connect(m_socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address),
            "connect");
    const int on = 1;
    checked(::setsockopt(m_socket.get(), IPPROTO_TCP, TCP_NODELAY, &on, sizeof on), "setsockopt");
    std::string token;
    std::ifstream(data / "api-token") >> token;
    m_header = " HTTP/1.1\r\nHost: 127.0.0.1:" + std::to_string(port) + "\r\nAuthorization: Bearer " + token +
               "\r\n";
}

const std::string* HttpConnection::get(const std::string& path) {
    return response("GET " + path + m_header + "\r\n");
}

const std::string* HttpConnection::post(const std::string& path, const std::string& json) {
    return response("POST " + path + m_header + "Content-Type: application/json\r\nContent-Length: " +
                    std::to_string(json.size()) + "\r\n\r\n" + json);
}

const std::string* HttpConnection::response(const std::string& request) {
    if (::send(m_socket.get(), request.data(), request.size(), MSG_NOSIGNAL) < 0) {
        return nullptr;
    }
    m_response.clear();
    std::array<char, 65536> chunk{};
    std::optional<std::size_t> size;
    while (!size || m_response.size() < *size) {
        const ssize_t count = ::recv(m_socket.get(), chunk.data(), chunk.size(), 0);
        if (count <= 0) {
            return nullptr;
        }
        m_response.append(chunk.data(), static_cast<std::size_t>(count));
        if (!size) {
            size = sizeOf(m_response);
        }
    }
    return &m_response;
}

std::uint16_t freePort() {
    const host::FileDescriptor socket = makeSocket();
    sockaddr_in address = loopback(0);
    socklen_t size = sizeof address;
    checked(::bind(socket.get(), reinterpret_cast<const sockaddr*>(&address), size), "bind");
    checked(::getsockname(socket.get(), reinterpret_cast<sockaddr*>(&address), &size), "getsockname");
    return ntohs(address.sin_port);
}

}  // namespace bench
