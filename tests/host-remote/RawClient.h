#pragma once

#include <sys/socket.h>
#include <sys/time.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

#include "host/remote/FileDescriptor.h"
#include "host/remote/RemoteFrame.h"
#include "host/remote/SocketAddress.h"

/// A client that writes bytes as it is told and reads frames when it is told; every wait ends after ten seconds.
class RawClient {
public:
    explicit RawClient(const std::filesystem::path& dataDirectory)
        : m_socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        const timeval limit{10, 0};
        ::setsockopt(m_socket.get(), SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
        const sockaddr_un address = host::socketAddressIn(dataDirectory);
        if (::connect(m_socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
            throw std::runtime_error("cannot connect");
        }
    }

    void write(std::string_view bytes) {
        while (!bytes.empty()) {
            const ssize_t sent = ::send(m_socket.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
            if (sent <= 0) {
                return;  // the server has closed: what follows shows it
            }
            bytes.remove_prefix(static_cast<std::size_t>(sent));
        }
    }
    void request(std::uint32_t id, std::string_view text) {
        write(host::RemoteFrame::encode(host::RemoteFrame::Kind::eRequest, id, text));
    }

    /// The next frame; nothing when the server has closed the connection.
    std::optional<host::RemoteFrame> read() {
        std::array<char, 4> head{};
        if (!fill(head.data(), head.size())) {
            return std::nullopt;
        }
        std::string body(host::RemoteFrame::readLength(head).value(), '\0');
        if (!fill(body.data(), body.size())) {
            return std::nullopt;
        }
        return host::RemoteFrame::readBody(body);
    }
    /// The next answer; notifications before it are passed over.
    std::optional<host::RemoteFrame> readAnswer() {
        for (;;) {
            std::optional<host::RemoteFrame> frame = read();
            if (!frame || frame->kind == host::RemoteFrame::Kind::eAnswer) {
                return frame;
            }
        }
    }
    /// Reads to the end of the connection; false when that does not come.
    bool awaitClosed() {
        std::array<char, 65536> chunk{};
        for (;;) {
            const ssize_t count = ::recv(m_socket.get(), chunk.data(), chunk.size(), 0);
            if (count == 0 || (count < 0 && errno == ECONNRESET)) {
                return true;
            }
            if (count < 0) {
                return false;
            }
        }
    }

private:
    bool fill(char* into, std::size_t count) {
        while (count > 0) {
            const ssize_t got = ::recv(m_socket.get(), into, count, 0);
            if (got < 0 && errno != ECONNRESET) {
                throw std::runtime_error("nothing came for ten seconds");
            }
            if (got <= 0) {
                return false;
            }
            into += got;
            count -= static_cast<std::size_t>(got);
        }
        return true;
    }

    host::FileDescriptor m_socket;
};
