#pragma once

#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/csta/CSTAEvent.h"

namespace host {

class WireDocument;
struct EventSchema;

/// The monitor that an event belongs to.
struct EventSource {
    /// The monitor id to put into the events.
    std::string crossRefId;
    std::string device;
};

/// Converts events of the wire into events of the platform: devices, the state of the phone's own connection,
/// the cause in the phone's numbering. Drops events that do not concern the monitored phone (EventRules.h),
/// and adds the ConnectionCleared events that a switch may omit: after a Diverted event, and for the second
/// call of a phone that transfers.
///
/// Reads members by local name, in any order; missing members become empty. Stores which calls are
/// conferences, so use one reader per connection. Not thread-safe.
class EventReader {
public:
    explicit EventReader(std::string ownDevice);

    /// The switch's id of the monitor that the event belongs to.
    [[nodiscard]] static std::string crossRefIdOf(const WireDocument& document);

    /// Returns the events to deliver, in order; none for an unknown event or one that does not concern the
    /// phone.
    [[nodiscard]] std::vector<std::unique_ptr<CSTAEvent>> read(const WireDocument& document,
                                                               const EventSource& source);

private:
    static constexpr std::size_t kKeptConferences = 32;

    [[nodiscard]] bool isConference(std::string_view callId) const;
    void rememberConference(std::string callId);
    void forgetConference(std::string_view callId);

    const std::string m_ownDevice;
    std::deque<std::string> m_conferences;
};

}  // namespace host
