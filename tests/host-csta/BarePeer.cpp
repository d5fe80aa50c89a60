#include "tests/host-csta/BarePeer.h"

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <array>

#include "host/csta-wire/WireDocument.h"

namespace linktest {

namespace {

void limit(int descriptor) {
    const timeval time{20, 0};
    ::setsockopt(descriptor, SOL_SOCKET, SO_RCVTIMEO, &time, sizeof time);
}

}  // namespace

// A listener that is not bound gets a free port.
BarePeer::BarePeer() : m_listener(::socket(AF_INET, SOCK_STREAM, 0)) {
    EXPECT_EQ(::listen(m_listener, 4), 0);
    limit(m_listener);
}

BarePeer::~BarePeer() {
    hangUp();
    ::close(m_listener);
}

unsigned short BarePeer::port() const {
    sockaddr_in address{};
    socklen_t size = sizeof address;
    EXPECT_EQ(::getsockname(m_listener, reinterpret_cast<sockaddr*>(&address), &size), 0);
    return ::ntohs(address.sin_port);
}

void BarePeer::accept() {
    hangUp();
    m_reader = host::FrameReader();
    m_socket = ::accept(m_listener, nullptr, nullptr);
    ASSERT_GE(m_socket, 0) << "nobody connects";
    limit(m_socket);
}

int BarePeer::expect(std::string_view name) {
    std::array<char, 4096> received{};
    std::optional<host::Frame> frame;
    while (!(frame = m_reader.next())) {
        const ssize_t size = ::recv(m_socket, received.data(), received.size(), 0);
        if (size <= 0) {
            ADD_FAILURE() << "the link says nothing more; missing: " << name;
            return 0;
        }
        m_reader.feed(std::string_view(received.data(), static_cast<std::size_t>(size)));
    }
    m_last = *frame;
    std::string fault;
    const auto document = host::WireDocument::parse(m_last.xml, fault);
    EXPECT_EQ(document ? document->name() : fault, name);
    return m_last.invokeId;
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

int BarePeer::greet() {
    expect("RequestSystemStatus");
    expect("SystemRegister");
    return expect("GetSwitchingFunctionDevices");
}

void BarePeer::startMonitor(const std::string& id) {
    send(expect("MonitorStart"),
         "<MonitorStartResponse><monitorCrossRefID>" + id + "</monitorCrossRefID></MonitorStartResponse>");
}

}  // namespace linktest
