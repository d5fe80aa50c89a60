#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/csta/EventDelivery.h"
#include "host/csta/LineDeviceList.h"

namespace host {

/// The services registered for the switch's system status and the phone's devices, and what was delivered
/// last. Reader thread only.
///
/// Some switches repeat the status as a heartbeat, so a status in service ("normal", "enabled") that repeats
/// the previous one is delivered once per connection. The devices are delivered when they are known and when
/// they change, and at once to a new receiver.
class SystemStatusReceivers {
public:
    explicit SystemStatusReceivers(EventDelivery delivery);

    /// Ignores a receiver that is already registered.
    void add(std::shared_ptr<EventSink> sink);
    void release(const Service& source);

    void deliver(std::string_view word);
    /// Stores the switch's status without delivering it.
    void remember(std::string_view word) { m_lastWord = word; }
    void connectionLost() { m_lastWord.clear(); }

    /// `again` delivers the devices even if they have not changed.
    void deliverDevices(const std::vector<LineDevice>& devices, bool again);

private:
    void deliverDevicesTo(const std::shared_ptr<EventSink>& sink) const;

    const EventDelivery m_delivery;
    std::vector<std::shared_ptr<EventSink>> m_sinks;
    std::string m_lastWord;
    std::vector<LineDevice> m_devices;
};

}  // namespace host
