#include "host/csta/SnapshotRequests.h"

#include <algorithm>
#include <system_error>
#include <utility>

#include "host/csta/requests/LinkLog.h"

namespace host {

namespace {

const char* reasonOf(const SwitchResponse& response) {
    switch (response.kind) {
        case SwitchResponse::Kind::eRefused: return "refused";
        case SwitchResponse::Kind::eTimedOut: return "no response in time";
        case SwitchResponse::Kind::eLost: return "connection lost";
        case SwitchResponse::Kind::eResponse: break;
    }
    return "no data in the response";
}

}  // namespace

SnapshotRequests::SnapshotRequests(asio::io_context& io, std::chrono::milliseconds timeout,
                                   RequestChannel& channel, const LinkMessages& messages)
    : m_io(io), m_timeout(timeout), m_channel(channel), m_messages(messages) {}

void SnapshotRequests::ofDevice(const std::string& device, DeviceHandler handler) {
    auto snapshot = std::make_shared<DeviceSnapshot>();
    send(m_messages.snapshotDevice(device), "SnapshotDeviceResponse",
         {.read = [snapshot](const WireDocument& message) { SnapshotReader::addTo(*snapshot, message); },
          .done = [snapshot, handler = std::move(handler)](
                      bool complete) { handler(complete ? std::optional(*snapshot) : std::nullopt); },
          .crossRefId = {},
          .timer = nullptr});
}

void SnapshotRequests::ofCall(const std::string& callId, const std::string& device, DeviceReader devices,
                              CallHandler handler) {
    auto snapshot = std::make_shared<CallSnapshot>();
    send(m_messages.snapshotCall(callId, device), "SnapshotCallResponse",
         {.read = [snapshot, devices = std::move(devices)](
                      const WireDocument& message) { SnapshotReader::addTo(*snapshot, message, devices); },
          .done = [snapshot, handler = std::move(handler)](
                      bool complete) { handler(complete ? std::optional(*snapshot) : std::nullopt); },
          .crossRefId = {},
          .timer = nullptr});
}

void SnapshotRequests::addSegment(const WireDocument& segment) {
    const std::string id = SnapshotReader::crossRefIdOf(segment);
    const auto found = std::find_if(m_requests.begin(), m_requests.end(), [&id](const auto& entry) {
        return !id.empty() && entry.second.crossRefId == id;
    });
    if (found == m_requests.end()) {
        CSTA_LINK_LOG(5, "%s belongs to no request", std::string(segment.name()).c_str());
        return;
    }
    found->second.read(segment);
    if (SnapshotReader::isLastSegment(segment)) {
        finish(found->first, true);
    } else {
        awaitSegment(found->first);
    }
}

void SnapshotRequests::connectionLost() {
    while (!m_requests.empty()) {
        finish(m_requests.begin()->first, false);
    }
}

void SnapshotRequests::send(const std::string& xml, const char* responseName, Request request) {
    const unsigned long serial = ++m_lastSerial;
    m_requests.emplace(serial, std::move(request));
    m_channel.send(xml, [this, serial, responseName](const SwitchResponse& response) {
        onResponse(serial, responseName, response);
    });
}

void SnapshotRequests::onResponse(unsigned long serial, const char* responseName,
                                  const SwitchResponse& response) {
    const auto found = m_requests.find(serial);
    if (found == m_requests.end()) {
        return;
    }
    if (!response.isNamed(responseName)) {
        CSTA_LINK_LOG(5, "no %s: %s", responseName, reasonOf(response));
        finish(serial, false);
        return;
    }
    found->second.read(*response.document);
    found->second.crossRefId = SnapshotReader::crossRefIdOf(*response.document);
    if (found->second.crossRefId.empty() || SnapshotReader::hasData(*response.document)) {
        finish(serial, SnapshotReader::hasData(*response.document));
        return;
    }
    awaitSegment(serial);
    for (const WireDocument& early : m_channel.claim(ReferenceKind::eService, found->second.crossRefId)) {
        addSegment(early);
    }
}

void SnapshotRequests::awaitSegment(unsigned long serial) {
    Request& request = m_requests.at(serial);
    request.timer = std::make_unique<asio::steady_timer>(m_io, m_timeout);
    request.timer->async_wait([this, serial](std::error_code error) {
        if (!error && m_requests.contains(serial)) {
            CSTA_LINK_LOG(4, "%s", "the switch does not complete a snapshot in time");
            finish(serial, false);
        }
    });
}

void SnapshotRequests::finish(unsigned long serial, bool complete) {
    auto node = m_requests.extract(serial);
    if (!node.mapped().crossRefId.empty()) {
        m_channel.drop(ReferenceKind::eService, node.mapped().crossRefId);
    }
    node.mapped().done(complete);
}

}  // namespace host
