#include "bench/baseline/BaselineLink.h"

#include <arpa/inet.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

#include <array>
#include <pugixml.hpp>
#include <stdexcept>

#include "bench/load/SystemCall.h"
#include "host/csta-wire/Frame.h"
#include "host/csta-wire/MessageWriter.h"
#include "host/csta-wire/NameSpaces.h"

namespace bench {

namespace {

constexpr const char* kDevice = "2001";

std::string utcText(std::time_t time) {
    std::tm parts{};
    ::gmtime_r(&time, &parts);
    std::array<char, 24> text{};
    return {text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%SZ", &parts)};
}

/// Number and name of a device identifier "N<number>name", or the number alone.
std::pair<std::string, std::string> partyOf(std::string_view text) {
    const std::size_t end = text.find('>');
    if (!text.starts_with("N<") || end == std::string_view::npos) {
        return {std::string(text), ""};
    }
    return {std::string(text.substr(2, end - 2)), std::string(text.substr(end + 1))};
}

}  // namespace

BaselineLink::BaselineLink(const std::string& address)
    : m_socket(checked(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0), "socket")) {
    sockaddr_in target{};
    target.sin_family = AF_INET;
    target.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    target.sin_port = htons(static_cast<std::uint16_t>(std::stoi(address.substr(address.find(':') + 1))));
    checked(::connect(m_socket.get(), reinterpret_cast<const sockaddr*>(&target), sizeof target), "connect");
    host::MessageWriter writer("MonitorStart", host::cstaNameSpace("ed4"));
    writer.open("monitorObject").text("deviceObject", kDevice).close();
    const std::string request = *host::encodeFrame(1, writer.finish());
    checked(::send(m_socket.get(), request.data(), request.size(), MSG_NOSIGNAL), "send to the switch");
}

bool BaselineLink::receive() {
    std::array<char, 65536> chunk{};
    const ssize_t count =
        checked(::recv(m_socket.get(), chunk.data(), chunk.size(), 0), "receive from the switch");
    m_received.append(chunk.data(), static_cast<std::size_t>(count));
    return count > 0;
}

std::optional<BaselineLink::EndedCall> BaselineLink::nextEndedCall() {
    while (const std::optional<std::string_view> xml = nextMessage()) {
        if (std::optional<EndedCall> ended = follow(*xml)) {
            return ended;
        }
    }
    m_received.erase(0, m_read);
    m_read = 0;
    return std::nullopt;
}

std::optional<std::string_view> BaselineLink::nextMessage() {
    const std::string_view rest = std::string_view(m_received).substr(m_read);
    if (rest.size() < host::Frame::kHeaderBytes) {
        return std::nullopt;
    }
    const auto byte = [rest](std::size_t at) {
        return static_cast<std::size_t>(static_cast<unsigned char>(rest[at]));
    };
    const std::size_t length = byte(2) * 256 + byte(3);
    if (rest.size() < length) {
        return std::nullopt;
    }
    m_read += length;
    return rest.substr(host::Frame::kHeaderBytes, length - host::Frame::kHeaderBytes);
}

std::optional<BaselineLink::EndedCall> BaselineLink::follow(std::string_view xml) {
    pugi::xml_document document;
    if (!document.load_buffer(xml.data(), xml.size())) {
        throw std::runtime_error("an invalid message of the switch");
    }
    const pugi::xml_node event = document.document_element();
    if (!std::string_view(event.name()).ends_with("Event")) {
        return std::nullopt;
    }
    // The connection of the event is its first element with a call id.
    const std::string callId =
        event.find_child([](const pugi::xml_node& node) { return node.child("callID"); })
            .child_value("callID");
    const std::string_view state = event.child_value("localConnectionInfo");
    if (state != "null") {
        Call& call = m_calls[callId];
        if (call.begin == 0) {
            call.begin = std::time(nullptr);
        }
        const auto party = partyOf(event.child("callingDevice").child_value("deviceIdentifier"));
        if (!party.first.empty()) {
            call.number = party.first;
            call.name = party.second;
        }
        return std::nullopt;
    }
    const auto found = m_calls.find(callId);
    if (found == m_calls.end()) {
        return std::nullopt;
    }
    const Call call = std::move(found->second);
    m_calls.erase(found);
    return EndedCall{call.number, call.name, {utcText(call.begin), std::time(nullptr) - call.begin}};
}

}  // namespace bench
