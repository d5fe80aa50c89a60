#include "host/csta/DeviceDiscovery.h"

#include <system_error>
#include <utility>

#include "host/csta-wire/WireDocument.h"
#include "host/csta/LinkLog.h"

namespace host {

DeviceDiscovery::DeviceDiscovery(const CstaLinkConfig& config, asio::io_context& io, RequestChannel& channel,
                                 const LinkMessages& messages, Found found)
    : m_config(config), m_channel(channel), m_messages(messages), m_found(std::move(found)), m_timer(io) {}

void DeviceDiscovery::ask() {
    end();
    m_waiting = true;
    m_channel.send(m_messages.getSwitchingFunctionDevices(m_config.ownDevice),
                   [this, serial = m_serial](const Answer& answer) {
                       if (serial == m_serial) {
                           answered(answer);
                       }
                   });
}

void DeviceDiscovery::takeSegment(const WireDocument& document) {
    if (!m_waiting || m_segments.size() > kMostDevices) {
        CSTA_LINK_LOG(5, "%s", "the switch tells devices that nobody asked for");
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
        awaitSegment();
        finishIfWhole();
    }
}

void DeviceDiscovery::answered(const Answer& answer) {
    if (answer.isOfKind("GetSwitchingFunctionDevicesResponse")) {
        m_crossRefId = childText(answer.document->root(), "serviceCrossRefID");
        awaitSegment();
        finishIfWhole();
    } else if (answer.kind == Answer::Kind::eTimedOut) {
        fallSilent();
    } else if (answer.kind != Answer::Kind::eLost) {
        useConfiguration("does not tell them");
    }
}

void DeviceDiscovery::awaitSegment() {
    m_timer.expires_after(m_config.requestTimeout);
    m_timer.async_wait([this, serial = m_serial](std::error_code error) {
        if (!error && serial == m_serial) {
            fallSilent();
        }
    });
}

void DeviceDiscovery::finishIfWhole() {
    LineDeviceList list(m_config.ownDevice);
    std::size_t named = 0;
    bool whole = false;
    for (const Segment& segment : m_segments) {
        if (!segment.crossRefId.empty() && segment.crossRefId != *m_crossRefId) {
            continue;
        }
        for (const Segment::Entry& entry : segment.entries) {
            list.add(entry.device, entry.category);
        }
        named += segment.entries.size();
        whole = whole || segment.last;
    }
    if (whole || named > kMostDevices) {
        takeList(list, named);
    }
}

void DeviceDiscovery::takeList(const LineDeviceList& list, std::size_t named) {
    if (named > kMostDevices) {
        useConfiguration("tells more than one phone has");
    } else if (list.isEmpty()) {
        useConfiguration("tells none");
    } else {
        end();
        m_everFound = true;
        m_found(list.devices());
    }
}

void DeviceDiscovery::fallSilent() {
    if (!m_everFound) {
        useConfiguration("is silent");
        return;
    }
    CSTA_LINK_LOG(4, "%s", "the switch does not tell the phone's devices in time; they stay as they were");
    end();
}

void DeviceDiscovery::useConfiguration(const char* why) {
    CSTA_LINK_LOG(5, "asked for the phone's devices, the switch %s; those of the configuration hold", why);
    end();
    m_everFound = true;
    m_found(configuredDevices(m_config));
}

void DeviceDiscovery::end() {
    ++m_serial;
    m_waiting = false;
    m_timer.cancel();
    m_crossRefId.reset();
    m_segments.clear();
}

}  // namespace host
