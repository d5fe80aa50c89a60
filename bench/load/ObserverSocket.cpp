#include "bench/load/ObserverSocket.h"

#include <arpa/inet.h>
#include <poll.h>
#include <sys/socket.h>

#include <cerrno>
#include <fstream>
#include <optional>
#include <stdexcept>

#include "bench/load/SystemCall.h"
#include "host/api-client/ApiAddress.h"
#include "host/remote/RemoteFrame.h"
#include "host/remote/SocketAddress.h"
#include "platform/journal-library/ClientRequest.h"

namespace bench {

namespace {

constexpr std::size_t kChunkBytes = 1U << 18U;
constexpr int kConfirmMilliseconds = 20'000;

std::string firstLine(const std::filesystem::path& path) {
    std::string line;
    std::ifstream file(path);
    std::getline(file, line);
    return line;
}

int open(int family) {
    return checked(::socket(family, SOCK_STREAM | SOCK_CLOEXEC, 0), "socket");
}

}  // namespace

ObserverSocket::ObserverSocket(Kind kind, const std::filesystem::path& data)
    : m_socket(open(kind == Kind::eRemote ? AF_UNIX : AF_INET)), m_chunk(kChunkBytes) {
    if (kind == Kind::eRemote) {
        subscribeRemote(data);
    } else {
        subscribeStream(data);
    }
}

void ObserverSocket::subscribeRemote(const std::filesystem::path& data) {
    const sockaddr_un address = host::socketAddressIn(data);
    checked(::connect(m_socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address),
            "connect");
    sendAll(host::RemoteFrame::encode(
        host::RemoteFrame::Kind::eRequest, 1,
        journalxml::buildRequest(journalxml::MethodId::eSubscribeForJournalEvents)));
    awaitBytes(std::string_view("A\0\0\0\1", host::RemoteFrame::kHeadBytes));
}

void ObserverSocket::subscribeStream(const std::filesystem::path& data) {
    const std::string url = host::ApiAddressFile::read(data).value().url;
    const std::size_t host = url.find("//") + 2;
    const std::size_t colon = url.find(':', host);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(static_cast<std::uint16_t>(std::stoi(url.substr(colon + 1))));
    checked(::connect(m_socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address),
            "connect");
    sendAll("GET /api/v1/events HTTP/1.1\r\nHost: " + url.substr(host) + "\r\nAuthorization: Bearer " +
            firstLine(data / "api-token") + "\r\n\r\n");
    awaitBytes(" 200 ");
}

void ObserverSocket::sendAll(std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t sent = ::send(m_socket.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
        bytes.remove_prefix(static_cast<std::size_t>(checked(sent, "send to the server")));
    }
}

void ObserverSocket::awaitBytes(std::string_view expected) {
    std::string received;
    while (received.find(expected) == std::string::npos) {
        pollfd wait{m_socket.get(), POLLIN, 0};
        if (::poll(&wait, 1, kConfirmMilliseconds) <= 0) {
            throw std::runtime_error("the server does not confirm the subscription");
        }
        received += receive();
    }
}

std::string_view ObserverSocket::receive() {
    const ssize_t count = ::recv(m_socket.get(), m_chunk.data(), m_chunk.size(), MSG_DONTWAIT);
    if (count < 0 && (errno == EAGAIN || errno == EINTR)) {
        return {};
    }
    if (checked(count, "receive from the server") == 0) {
        throw std::runtime_error("the server has disconnected an observer");
    }
    return {m_chunk.data(), static_cast<std::size_t>(count)};
}

}  // namespace bench
