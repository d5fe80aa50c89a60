#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/csta/EventDelivery.h"

namespace host {

/// Who asked to be told of the switch's system status, and what they were told last. Reader thread only.
///
/// A heart-beat repeats the status without an event behind it; while the switch serves, the same word is delivered
/// once a connection.
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

private:
    const EventDelivery m_delivery;
    std::vector<std::shared_ptr<EventSink>> m_sinks;
    std::string m_lastWord;
};

}  // namespace host
