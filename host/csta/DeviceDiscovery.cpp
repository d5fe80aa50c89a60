#include "host/csta/DeviceDiscovery.h"

#include <system_error>
#include <utility>

#include "host/csta-wire/WireDocument.h"
#include "host/csta/requests/LinkLog.h"

namespace host {

DeviceDiscovery::DeviceDiscovery(const CstaLinkConfig& config, asio::io_context& io, RequestChannel& channel,
                                 const LinkMessages& messages, Found found)
    : m_config(config), m_channel(channel), m_messages(messages), m_found(std::move(found)), m_timer(io) {}

void DeviceDiscovery::start() {
    reset();
    m_waiting = true;
    m_channel.send(m_messages.getSwitchingFunctionDevices(m_config.ownDevice),
                   [this, serial = m_serial](const SwitchResponse& response) {
                       if (serial == m_serial) {
                           onResponse(response);
                       }
                   });
}

void DeviceDiscovery::addSegment(const WireDocument& document) {
    if (!m_waiting || m_segments.size() > kMaxDevices) {
        CSTA_LINK_LOG(5, "%s", "the switch lists devices that were not requested");
        return;
    }
    Segment segment;
    segment.crossRefId = childText(document.root(), "serviceCrossRefID");
    const std::string last = childText(document.root(), "lastSegment");
    segment.last = last.empty() || isTrue(last);
    for (const pugi::xml_node item : childNamed(document.root(), "deviceList").children()) {
        segment.entries.push_back(
            {firstText(childNamed(item, "deviceID")), firstText(childNamed(item, "deviceCategory"))});
    }
    m_segments.push_back(std::move(segment));
    if (m_crossRefId) {
        awaitNextSegment();
        finishIfComplete();
    }
}

void DeviceDiscovery::onResponse(const SwitchResponse& response) {
    if (response.isNamed("GetSwitchingFunctionDevicesResponse")) {
        m_crossRefId = childText(response.document->root(), "serviceCrossRefID");
        awaitNextSegment();
        if (!m_crossRefId->empty()) {
            for (const WireDocument& early : m_channel.claim(ReferenceKind::eService, *m_crossRefId)) {
                addSegment(early);
            }
        }
        if (m_waiting) {
            finishIfComplete();
        }
    } else if (response.kind == SwitchResponse::Kind::eTimedOut) {
        onTimeout();
    } else if (response.kind != SwitchResponse::Kind::eLost) {
        useConfiguration("does not list them");
    }
}

void DeviceDiscovery::awaitNextSegment() {
    m_timer.expires_after(m_config.requestTimeout);
    m_timer.async_wait([this, serial = m_serial](std::error_code error) {
        if (!error && serial == m_serial) {
            onTimeout();
        }
    });
}

void DeviceDiscovery::finishIfComplete() {
    LineDeviceList list(m_config.ownDevice);
    std::size_t named = 0;
    bool complete = false;
    for (const Segment& segment : m_segments) {
        if (!segment.crossRefId.empty() && segment.crossRefId != *m_crossRefId) {
            continue;
        }
        for (const Segment::Entry& entry : segment.entries) {
            list.add(entry.device, entry.category);
        }
        named += segment.entries.size();
        complete = complete || segment.last;
    }
    if (complete || named > kMaxDevices) {
        finish(list, named);
    }
}

void DeviceDiscovery::finish(const LineDeviceList& list, std::size_t named) {
    if (named > kMaxDevices) {
        useConfiguration("lists too many for one phone");
    } else if (list.isEmpty()) {
        useConfiguration("lists none");
    } else {
        reset();
        m_everFound = true;
        m_found(list.devices());
    }
}

void DeviceDiscovery::onTimeout() {
    if (!m_everFound) {
        useConfiguration("does not respond");
        return;
    }
    CSTA_LINK_LOG(4, "%s", "the switch does not list the phone's devices in time; they stay as they were");
    reset();
}

void DeviceDiscovery::useConfiguration(const char* reason) {
    CSTA_LINK_LOG(5, "asked for the phone's devices, the switch %s; the configured devices apply", reason);
    reset();
    m_everFound = true;
    m_found(configuredDevices(m_config));
}

void DeviceDiscovery::reset() {
    ++m_serial;
    m_waiting = false;
    m_timer.cancel();
    if (m_crossRefId && !m_crossRefId->empty()) {
        m_channel.drop(ReferenceKind::eService, *m_crossRefId);
    }
    m_crossRefId.reset();
    m_segments.clear();
}

}  // namespace host
