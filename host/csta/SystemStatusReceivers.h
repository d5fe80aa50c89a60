#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/csta/EventDelivery.h"
#include "host/csta/LineDeviceList.h"

namespace host {

/// Who asked to be told of the switch's system status, and with it of the devices that the phone serves; and what they
/// were told last. Reader thread only.
///
/// A heart-beat repeats the status without an event behind it; while the switch serves, the same word is delivered
/// once a connection. The devices are delivered when they are known and when they change, and to a newcomer at once.
class SystemStatusReceivers {
public:
    explicit SystemStatusReceivers(EventDelivery delivery);

    /// A receiver that is there already is not added again.
    void add(std::shared_ptr<EventSink> sink);
    void release(const Service& source);

    void deliver(std::string_view word);
    /// The switch's status is known without anybody having to be told.
    void remember(std::string_view word) { m_lastWord = word; }
    void connectionLost() { m_lastWord.clear(); }

    /// `again` delivers the devices even when they are the same as before.
    void deliverDevices(const std::vector<LineDevice>& devices, bool again);

private:
    void deliverDevicesTo(const std::shared_ptr<EventSink>& sink) const;

    const EventDelivery m_delivery;
    std::vector<std::shared_ptr<EventSink>> m_sinks;
    std::string m_lastWord;
    std::vector<LineDevice> m_devices;
};

}  // namespace host
