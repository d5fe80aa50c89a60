#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "host/switch/calls/SimulatedEvent.h"
#include "platform/csta/CallLogEntryEvent.h"

namespace host {

/// A call that is over for a device, and the log that it belongs in.
struct FinishedCall {
    std::string device;
    CallLogEntryEvent::_LogTarget log = CallLogEntryEvent::eMissed;
    /// The far end.
    Party party;
};

/// Follows what the phones hear and says which calls are over for which device:
///
///     made by the device                                  dialled
///     came to it, answered there                          received
///     came to it, not answered; or only reported to it    missed
///     forwarded on, or answered at another phone          in no log
///
/// A transfer or a conference goes on as the call that it was made from; the device's other call is over with it.
/// Not thread-safe.
class FinishedCalls {
public:
    [[nodiscard]] std::vector<FinishedCall> follow(const SimulatedEvent& occurrence);

private:
    struct Call {
        bool outgoing = false;
        bool answered = false;
        Party party;
    };
    /// By device and call id.
    using Key = std::pair<std::string, std::string>;

    void note(const Party& device, const std::string& callId, const Call& call);
    void learnName(const SimulatedEvent& occurrence);
    [[nodiscard]] std::vector<FinishedCall> cleared(const SimulatedEvent& occurrence);
    [[nodiscard]] std::vector<FinishedCall> joined(const SimulatedEvent& occurrence);
    [[nodiscard]] static FinishedCall finished(const std::string& device, const Call& call);

    std::map<Key, Call> m_calls;
};

}  // namespace host
