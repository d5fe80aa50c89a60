#pragma once

#include <array>
#include <string>

#include "platform/csta/CallLogEntryEvent.h"

/// A request to the switch about the call log that it keeps. Members that are not set are zero or empty.
struct CallLogEntryRequest {
    enum Action : int { eDeleteOne = 1, eDeleteAll = 2 };
    enum NumberKind : int { eEntry = 1, eWholeLog = 2 };

    struct ValueAndText {
        int value = 0;
        std::string text;
    };

    int action = 0;
    CallLogEntryEvent::_LogTarget logTarget = CallLogEntryEvent::eReceived;
    int reserved = 0;
    /// The time stamp of the occurrence as the switch sent it; empty for whole logs and groups.
    std::string entryTime;
    int numberKind = 0;
    std::string subscriberNumber;
    /// Only the last pair is used: (1, group text) in a missed-group request.
    std::array<ValueAndText, 4> further;
};
