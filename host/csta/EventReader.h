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

/// A monitor, as far as reading its events needs it.
struct EventSource {
    /// What the events call the monitor from here on.
    std::string crossRefId;
    std::string device;
};

/// Turns the events of the wire into those of the platform: devices, the state of the phone's own connection, the
/// cause in the phone's numbering. Leaves out what does not concern the monitored phone (EventRules.h), and adds
/// the ConnectionCleared events that a switch may spare itself: after a Diverted event, and of the second call of a
/// phone that transfers.
///
/// Reads by local names, in any order; members that are missing become empty. Remembers which calls are
/// conferences, so one reader serves one connection. Not thread-safe: the link's reader thread.
class EventReader {
public:
    explicit EventReader(std::string ownDevice);

    /// The switch's id of the monitor that the event belongs to.
    [[nodiscard]] static std::string crossRefIdOf(const WireDocument& document);

    /// The events to deliver, in order; none for an event that is not known or does not concern the phone.
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
