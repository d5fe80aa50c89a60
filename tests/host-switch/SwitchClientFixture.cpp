#include "tests/host-switch/SwitchClientFixture.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <future>
#include <memory>

#include "host/csta-wire/WireDocument.h"

namespace switchtest {

RawClient::RawClient(unsigned short port) : m_socket(::socket(AF_INET, SOCK_STREAM, 0)) {
    const timeval patience{20, 0};
    ::setsockopt(m_socket, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = ::htonl(INADDR_LOOPBACK);
    address.sin_port = ::htons(port);
    EXPECT_EQ(::connect(m_socket, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
}

RawClient::~RawClient() {
    ::close(m_socket);
}

void RawClient::send(int invokeId, std::string_view xml) const {
    sendBytes(host::encodeFrame(invokeId, xml).value());
}

void RawClient::sendBytes(std::string_view bytes) const {
    EXPECT_EQ(::send(m_socket, bytes.data(), bytes.size(), MSG_NOSIGNAL), static_cast<ssize_t>(bytes.size()));
}

host::Frame RawClient::next() {
    std::array<char, 4096> received{};
    while (true) {
        if (std::optional<host::Frame> frame = m_reader.next()) {
            return *frame;
        }
        const ssize_t size = ::recv(m_socket, received.data(), received.size(), 0);
        if (size <= 0) {
            ADD_FAILURE() << "the switch says nothing more";
            return {};
        }
        m_reader.feed(std::string_view(received.data(), static_cast<std::size_t>(size)));
    }
}

std::string RawClient::nameOf(const host::Frame& frame) {
    std::string fault;
    const auto document = host::WireDocument::parse(frame.xml, fault);
    if (!document) {
        ADD_FAILURE() << fault;
        return {};
    }
    std::string name(document->name());
    if (document->kind() != host::MessageKind::eEvent) {
        return name;
    }
    EXPECT_EQ(frame.invokeId, host::Frame::kEventInvokeId);
    const std::string state = host::childText(document->root(), "localConnectionInfo");
    name = name.substr(0, name.size() - 5) + (state.empty() ? "" : " " + state);
    const std::string device = m_devices[host::childText(document->root(), "monitorCrossRefID")];
    return m_devices.size() > 1 ? device + " " + name : name;
}

std::vector<std::string> RawClient::nextNames(std::size_t number) {
    std::vector<std::string> names(number);
    std::generate(names.begin(), names.end(), [this] { return nameOf(next()); });
    return names;
}

std::string RawClient::heardUpTo(int invokeId) {
    send(invokeId, "<RequestSystemStatus/>");
    std::string heard;
    for (host::Frame frame = next(); frame.invokeId != invokeId && !frame.xml.empty(); frame = next()) {
        heard += (heard.empty() ? "" : ", ") + nameOf(frame);
    }
    return heard;
}

std::string RawClient::ask(int invokeId, std::string_view xml) {
    send(invokeId, xml);
    const host::Frame answer = next();
    EXPECT_EQ(answer.invokeId, invokeId);
    return answer.xml;
}

std::string RawClient::monitor(const std::string& device, const std::string& filter) {
    const std::string answer = ask(1, "<MonitorStart><monitorObject><deviceObject>" + device +
                                          "</deviceObject></monitorObject>" + filter + "</MonitorStart>");
    std::string fault;
    const auto document = host::WireDocument::parse(answer, fault);
    EXPECT_TRUE(document && document->name() == "MonitorStartResponse") << answer;
    std::string id = document ? host::childText(document->root(), "monitorCrossRefID") : std::string();
    m_devices[id] = device;
    return id;
}

bool RawClient::isClosed() const {
    char byte = 0;
    return ::recv(m_socket, &byte, 1, 0) == 0;
}

void Switch::playToEnd(const std::string& text, host::PlayOptions options) {
    const auto over = std::make_shared<std::promise<void>>();
    options.finished = [over] { over->set_value(); };
    simulator.run(host::Scenario::parse(text), options);
    ASSERT_EQ(over->get_future().wait_for(std::chrono::seconds(20)), std::future_status::ready) << text;
}

host::SwitchOptions Switch::anyPort() {
    host::SwitchOptions options;
    options.port = 0;
    return options;
}

}  // namespace switchtest
