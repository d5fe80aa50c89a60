#include "tests/host-csta/BarePeer.h"

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <array>
#include <stdexcept>

#include "host/csta-wire/Frame.h"
#include "host/csta-wire/WireDocument.h"

namespace linktest {

namespace {

constexpr int kPatienceSeconds = 20;

void limit(int descriptor) {
    const timeval time{kPatienceSeconds, 0};
    ::setsockopt(descriptor, SOL_SOCKET, SO_RCVTIMEO, &time, sizeof time);
    const int one = 1;
    ::setsockopt(descriptor, IPPROTO_TCP, TCP_NODELAY, &one, sizeof one);
}

}  // namespace

BarePeer::BarePeer() : m_listener(::socket(AF_INET, SOCK_STREAM, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = ::htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* const generic = reinterpret_cast<sockaddr*>(&address);
    if (::bind(m_listener, generic, size) != 0 || ::listen(m_listener, 4) != 0 ||
        ::getsockname(m_listener, generic, &size) != 0) {
        throw std::runtime_error("the peer cannot listen");
    }
    m_port = ::ntohs(address.sin_port);
    limit(m_listener);
}

BarePeer::~BarePeer() {
    hangUp();
    ::close(m_listener);
}

void BarePeer::accept() {
    hangUp();
    m_reader = host::FrameReader();
    m_socket = ::accept(m_listener, nullptr, nullptr);
    ASSERT_GE(m_socket, 0) << "nobody connects";
    limit(m_socket);
}

int BarePeer::expect(std::string_view name) {
    const host::Frame frame = nextFrame();
    std::string fault;
    const auto document = host::WireDocument::parse(frame.xml, fault);
    EXPECT_TRUE(document) << fault << ": " << frame.xml;
    EXPECT_EQ(document ? document->name() : "", name);
    m_lastXml = frame.xml;
    return frame.invokeId;
}

void BarePeer::send(int invokeId, std::string_view xml) const {
    sendBytes(host::encodeFrame(invokeId, xml).value());
}

void BarePeer::sendBytes(std::string_view bytes) const {
    while (!bytes.empty()) {
        const ssize_t sent = ::send(m_socket, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        ASSERT_GT(sent, 0);
        bytes.remove_prefix(static_cast<std::size_t>(sent));
    }
}

void BarePeer::hangUp() {
    if (m_socket >= 0) {
        ::close(m_socket);
        m_socket = -1;
    }
}

void BarePeer::startMonitor(const std::string& id) {
    expect("RequestSystemStatus");
    expect("SystemRegister");
    const int invokeId = expect("MonitorStart");
    send(invokeId,
         "<MonitorStartResponse><monitorCrossRefID>" + id + "</monitorCrossRefID></MonitorStartResponse>");
}

host::Frame BarePeer::nextFrame() {
    std::array<char, 4096> received{};
    while (true) {
        if (std::optional<host::Frame> frame = m_reader.next()) {
            return *frame;
        }
        const ssize_t size = ::recv(m_socket, received.data(), received.size(), 0);
        if (size <= 0) {
            ADD_FAILURE() << "the link says nothing more";
            return {};
        }
        m_reader.feed(std::string_view(received.data(), static_cast<std::size_t>(size)));
    }
}

}  // namespace linktest
