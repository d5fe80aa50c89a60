#include "bench/load/LoadSwitch.h"

#include <arpa/inet.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <optional>
#include <stdexcept>

#include "bench/calls/CallWriter.h"
#include "bench/load/SystemCall.h"
#include "host/csta-wire/WireDocument.h"

namespace bench {

namespace {

constexpr int kClient = 1;
constexpr int kRequestId = 1;
constexpr int kQuietMilliseconds = 200;
constexpr int kStartMilliseconds = 20'000;

sockaddr_in loopback() {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

void waitReadable(int descriptor, const char* purpose) {
    pollfd wait{descriptor, POLLIN, 0};
    if (::poll(&wait, 1, kStartMilliseconds) <= 0) {
        throw std::runtime_error(purpose);
    }
}

}  // namespace

LoadSwitch::LoadSwitch()
    : m_listener(checked(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0), "socket")),
      m_responses({.edition = "ed4", .ownDevice = kDevice}, m_monitors, m_callLogs,
                  [](const std::string& /*device*/) { return std::vector<host::LiveCall>(); }) {
    sockaddr_in address = loopback();
    socklen_t size = sizeof address;
    checked(::bind(m_listener.get(), reinterpret_cast<const sockaddr*>(&address), size), "bind");
    checked(::listen(m_listener.get(), 4), "listen");
    checked(::getsockname(m_listener.get(), reinterpret_cast<sockaddr*>(&address), &size), "getsockname");
    m_port = ntohs(address.sin_port);
}

std::string LoadSwitch::address() const {
    return "127.0.0.1:" + std::to_string(m_port);
}

void LoadSwitch::awaitMonitor() {
    waitReadable(m_listener.get(), "no client connects to the switch");
    m_client = host::FileDescriptor(
        checked(::accept4(m_listener.get(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK), "accept"));
    const int on = 1;
    checked(::setsockopt(m_client.get(), IPPROTO_TCP, TCP_NODELAY, &on, sizeof on), "setsockopt");
    sendAll(*host::encodeFrame(kRequestId, m_responses.systemStatus("enabled")));
    while (m_monitors.ofDevice(kDevice).empty()) {
        waitReadable(m_client.get(), "the client starts no monitor");
        receive();
    }
    pollfd wait{m_client.get(), POLLIN, 0};
    while (::poll(&wait, 1, kQuietMilliseconds) > 0) {
        receive();
    }
}

std::string LoadSwitch::callBytes(const CallPlan& plan, std::size_t call) const {
    const host::SwitchMonitor& monitor = *m_monitors.ofDevice(kDevice).front();
    std::string bytes;
    for (const std::string& message : messagesOf(plan, call, monitor)) {
        bytes += *host::encodeFrame(host::Frame::kEventInvokeId, message);
    }
    return bytes;
}

std::size_t LoadSwitch::send(std::string_view bytes) {
    const ssize_t count = ::send(m_client.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (count < 0 && errno == EAGAIN) {
        return 0;
    }
    return static_cast<std::size_t>(checked(count, "send to the client"));
}

void LoadSwitch::sendAll(std::string_view bytes) {
    while (!bytes.empty()) {
        pollfd wait{m_client.get(), POLLOUT, 0};
        checked(::poll(&wait, 1, -1), "poll");
        bytes.remove_prefix(send(bytes));
    }
}

void LoadSwitch::receive() {
    std::array<char, 65536> chunk{};
    const ssize_t count = ::recv(m_client.get(), chunk.data(), chunk.size(), 0);
    if (count < 0 && errno == EAGAIN) {
        return;
    }
    if (checked(count, "receive from the client") == 0) {
        throw std::runtime_error("the client of the switch has disconnected");
    }
    m_reader.feed({chunk.data(), static_cast<std::size_t>(count)});
    while (const std::optional<host::Frame> frame = m_reader.next()) {
        respond(*frame);
    }
}

void LoadSwitch::respond(const host::Frame& frame) {
    std::string fault;
    const std::optional<host::WireDocument> document = host::WireDocument::parse(frame.xml, fault);
    if (!document || document->kind() != host::MessageKind::eRequest) {
        return;
    }
    const host::RequestResponder::Outcome outcome = m_responses.respond(*document, kClient);
    if (outcome.response) {
        sendAll(*host::encodeFrame(frame.invokeId, *outcome.response));
    }
    if (outcome.followUp) {
        sendAll(*host::encodeFrame(kRequestId, *outcome.followUp));
    }
}

}  // namespace bench
