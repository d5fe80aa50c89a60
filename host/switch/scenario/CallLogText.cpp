#include "host/switch/scenario/CallLogText.h"

#include <algorithm>
#include <cstdlib>

namespace host {

const StatementReader::Words& callLogNames() {
    static const StatementReader::Words names = {{"received", std::to_string(CallLogEntryEvent::eReceived)},
                                                 {"missed", std::to_string(CallLogEntryEvent::eMissed)},
                                                 {"dialled", std::to_string(CallLogEntryEvent::eDialled)},
                                                 {"group", std::to_string(CallLogEntryEvent::eMissedGroup)}};
    return names;
}

CallLogEntryEvent::_LogTarget callLogOf(const std::string& number) {
    return static_cast<CallLogEntryEvent::_LogTarget>(std::atoi(number.c_str()));
}

std::string callLogText(const std::vector<CallLogEntryEvent>& entries) {
    std::string text;
    for (const CallLogEntryEvent& entry : entries) {
        const std::string target = std::to_string(entry.logTarget);
        const auto named = std::find_if(callLogNames().begin(), callLogNames().end(),
                                        [&target](const auto& name) { return name.second == target; });
        text += named->first + "  " +
                (entry.subscriberNumber.empty() ? "anonymous" : entry.subscriberNumber) + "  " +
                entry.entryTime + (entry.name.empty() ? "" : "  " + entry.name) +
                (entry.textF.empty() ? "" : "  of " + entry.textF) + "\n";
    }
    return text;
}

}  // namespace host
