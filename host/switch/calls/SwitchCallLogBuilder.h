#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "host/switch/calls/SwitchEvent.h"
#include "platform/csta/CallLogEntryEvent.h"

namespace host {

/// A call that has ended for a device, and its log.
struct FinishedCall {
    std::string device;
    CallLogEntryEvent::_LogTarget log = CallLogEntryEvent::eMissed;
    /// The far end.
    SwitchParty party;
};

/// Tracks the calls by the events of the phones, and reports the calls that have ended for a device:
///
///     made by the device                                  dialled
///     received and answered by the device                 received
///     received, not answered; or only reported to it      missed
///     forwarded, or answered at another phone             in no log
///
/// A transferred or conferenced call continues the call that it was made from; the device's other call ends.
/// Not thread-safe.
class SwitchCallLogBuilder {
public:
    [[nodiscard]] std::vector<FinishedCall> process(const SwitchEvent& event);

private:
    struct Call {
        bool outgoing = false;
        bool established = false;
        SwitchParty party;
    };
    /// By device and call id.
    using Key = std::pair<std::string, std::string>;

    void record(const SwitchParty& device, const std::string& callId, const Call& call);
    void updateName(const SwitchEvent& event);
    [[nodiscard]] std::vector<FinishedCall> cleared(const SwitchEvent& event);
    [[nodiscard]] std::vector<FinishedCall> joined(const SwitchEvent& event);
    [[nodiscard]] static FinishedCall finished(const std::string& device, const Call& call);

    std::map<Key, Call> m_calls;
};

}  // namespace host
