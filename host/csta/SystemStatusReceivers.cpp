#include "host/csta/SystemStatusReceivers.h"

#include <algorithm>
#include <utility>

#include "host/csta/association/SystemStatusValues.h"
#include "host/csta/requests/LinkLog.h"
#include "host/log/PrivateText.h"
#include "platform/csta/CSTASystemEvents.h"

namespace host {

SystemStatusReceivers::SystemStatusReceivers(EventDelivery delivery) : m_delivery(std::move(delivery)) {}

void SystemStatusReceivers::add(std::shared_ptr<EventSink> sink) {
    const bool known =
        std::any_of(m_sinks.begin(), m_sinks.end(), [&sink](const std::shared_ptr<EventSink>& other) {
            return other->receiver == sink->receiver && other->source == sink->source;
        });
    if (known) {
        return;
    }
    m_sinks.push_back(std::move(sink));
    if (!m_devices.empty()) {
        deliverDevicesTo(m_sinks.back());
    }
}

void SystemStatusReceivers::release(const Service& source) {
    const auto removed = std::stable_partition(
        m_sinks.begin(), m_sinks.end(),
        [&source](const std::shared_ptr<EventSink>& sink) { return sink->source != &source; });
    std::for_each(removed, m_sinks.end(), [](const std::shared_ptr<EventSink>& sink) { sink->live = false; });
    m_sinks.erase(removed, m_sinks.end());
}

void SystemStatusReceivers::deliver(std::string_view word) {
    if (word.empty() || (isInService(word) && word == m_lastWord)) {
        return;
    }
    m_lastWord = word;
    CSTA_LINK_LOG(5, "system status of the switch: %s", loggedReason(m_lastWord).c_str());
    for (const std::shared_ptr<EventSink>& sink : m_sinks) {
        auto event = std::make_unique<CSTASystemStatusEvent>();
        event->setSystemStatus(platformStatus(word));
        m_delivery.deliver(sink, std::move(event));
    }
}

void SystemStatusReceivers::deliverDevices(const std::vector<LineDevice>& devices, bool again) {
    if (devices == m_devices && !again) {
        return;
    }
    m_devices = devices;
    CSTA_LINK_LOG(5, "the phone has %zu devices", m_devices.size());
    for (const std::shared_ptr<EventSink>& sink : m_sinks) {
        deliverDevicesTo(sink);
    }
}

void SystemStatusReceivers::deliverDevicesTo(const std::shared_ptr<EventSink>& sink) const {
    auto event = std::make_unique<CSTASwitchingFunctionDevices>();
    for (const LineDevice& device : m_devices) {
        event->addDevice(device.type, device.id);
    }
    m_delivery.deliver(sink, std::move(event));
}

}  // namespace host
