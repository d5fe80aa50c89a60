#include "host/remote/RemoteClient.h"

#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <system_error>
#include <utility>

#include "host/remote/RemoteError.h"
#include "host/remote/SocketAddress.h"

namespace host {
namespace {

RemoteError unreachable(const std::string& path) {
    return RemoteError("cannot reach calljournal at " + path +
                       ": start it with `calljournal serve`, or name the data "
                       "directory of one that runs with --data");
}

RemoteError broken(const std::string& path, const std::string& what) {
    return RemoteError("the connection to calljournal at " + path + " " + what);
}

RemoteError closed(const std::string& path) {
    return broken(path,
                  "was closed: it has ended, or has too many clients; see its log, and try again when other "
                  "clients have ended");
}

}  // namespace

RemoteClient::RemoteClient(const std::filesystem::path& dataDirectory)
    : m_path((dataDirectory / kSocketName).string()),
      m_socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)) {
    const sockaddr_un address = socketAddressIn(dataDirectory);
    if (!m_socket.isOpen()) {
        throw RemoteError("cannot make a socket: " + std::generic_category().message(errno));
    }
    if (::connect(m_socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
        if (errno == ENOENT || errno == ECONNREFUSED) {
            throw unreachable(m_path);
        }
        throw RemoteError("cannot reach calljournal at " + m_path + ": " +
                          std::generic_category().message(errno));
    }
}

std::string RemoteClient::call(const std::string& request, std::chrono::milliseconds limit) {
    return exchange(RemoteFrame::Kind::eRequest, request, limit, -1).value();
}

std::optional<std::string> RemoteClient::call(const std::string& request, int interrupt) {
    return exchange(RemoteFrame::Kind::eRequest, request, kLimit, interrupt);
}

void RemoteClient::setLine(const std::string& device) {
    try {
        static_cast<void>(exchange(RemoteFrame::Kind::eLine, device, kLimit, -1));
    } catch (const RemoteError&) {
        throw RemoteError("there is no line " + device + ", or the server has ended");
    }
}

std::optional<std::string> RemoteClient::exchange(RemoteFrame::Kind kind, const std::string& request,
                                                  std::chrono::milliseconds limit, int interrupt) {
    const Deadline deadline = std::chrono::steady_clock::now() + limit;
    const std::uint32_t id = ++m_lastId;
    sendAll(RemoteFrame::encode(kind, id, request), deadline);
    while (std::optional<RemoteFrame> frame = receive(deadline, interrupt)) {
        if (frame->kind == RemoteFrame::Kind::eNotification) {
            m_notifications.push_back(std::move(frame->text));
        } else if (frame->kind == RemoteFrame::Kind::eResponse && frame->id == id) {
            return std::move(frame->text);
        }
    }
    return std::nullopt;
}

std::optional<std::string> RemoteClient::nextNotification(int interrupt) {
    while (m_notifications.empty()) {
        std::optional<RemoteFrame> frame = receive(std::nullopt, interrupt);
        if (!frame) {
            return std::nullopt;
        }
        if (frame->kind == RemoteFrame::Kind::eNotification) {
            m_notifications.push_back(std::move(frame->text));
        }
    }
    std::string first = std::move(m_notifications.front());
    m_notifications.pop_front();
    return first;
}

void RemoteClient::sendAll(const std::string& bytes, const Deadline& deadline) {
    std::size_t sent = 0;
    while (sent < bytes.size()) {
        const ssize_t count = ::send(m_socket.get(), bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
        if (count >= 0) {
            sent += static_cast<std::size_t>(count);
        } else if (errno == EAGAIN) {
            waitUntilReady(POLLOUT, deadline, -1);
        } else if (errno == EPIPE || errno == ECONNRESET) {
            throw closed(m_path);
        } else if (errno != EINTR) {
            throw broken(m_path, "broke: " + std::generic_category().message(errno));
        }
    }
}

std::optional<RemoteFrame> RemoteClient::receive(const Deadline& deadline, int interrupt) {
    std::array<char, 65536> chunk{};
    for (;;) {
        if (std::optional<RemoteFrame> frame = takeReceived()) {
            return frame;
        }
        if (!waitUntilReady(POLLIN, deadline, interrupt)) {
            return std::nullopt;
        }
        const ssize_t count = ::recv(m_socket.get(), chunk.data(), chunk.size(), 0);
        if (count > 0) {
            m_received.append(chunk.data(), static_cast<std::size_t>(count));
        } else if (count == 0 || errno == ECONNRESET) {
            throw closed(m_path);
        } else if (errno != EINTR && errno != EAGAIN) {
            throw broken(m_path, "broke: " + std::generic_category().message(errno));
        }
    }
}

std::optional<RemoteFrame> RemoteClient::takeReceived() {
    if (m_received.size() < RemoteFrame::kLengthBytes) {
        return std::nullopt;
    }
    std::array<char, RemoteFrame::kLengthBytes> head{};
    std::copy_n(m_received.begin(), head.size(), head.begin());
    const std::optional<std::size_t> length = RemoteFrame::readLength(head);
    if (length && m_received.size() < head.size() + *length) {
        return std::nullopt;
    }
    std::optional<RemoteFrame> frame;
    if (length) {
        frame = RemoteFrame::readBody(std::string_view(m_received).substr(head.size(), *length));
    }
    if (!frame) {
        throw broken(m_path, "carries data that is not a frame");
    }
    m_received.erase(0, head.size() + *length);
    return frame;
}

bool RemoteClient::waitUntilReady(short events, const Deadline& deadline, int interrupt) const {
    std::array<pollfd, 2> waits{{{m_socket.get(), events, 0}, {interrupt, POLLIN, 0}}};
    for (;;) {
        int left = -1;
        if (deadline) {
            const auto span = *deadline - std::chrono::steady_clock::now();
            const auto ms = std::chrono::ceil<std::chrono::milliseconds>(span).count();
            if (ms <= 0) {
                throw RemoteError("calljournal at " + m_path + " does not respond");
            }
            left = static_cast<int>(std::min<std::int64_t>(ms, 3600 * 1000));
        }
        const int ready = ::poll(waits.data(), waits.size(), left);
        if (ready < 0 && errno != EINTR) {
            throw broken(m_path, "broke: " + std::generic_category().message(errno));
        }
        if (ready > 0) {
            return waits[1].revents == 0;
        }
    }
}

}  // namespace host
