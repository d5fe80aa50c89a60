#pragma once

#include "src/JournalServiceEvents/calls/Call.h"

namespace journal {

/// Receives the calls that the state machine has finished. Requires: the call-map lock is held.
class FinishedCallsIfc {
public:
    FinishedCallsIfc() = default;
    FinishedCallsIfc(const FinishedCallsIfc&) = delete;
    FinishedCallsIfc& operator=(const FinishedCallsIfc&) = delete;
    virtual ~FinishedCallsIfc() = default;

    /// Files the call by `state` and, with few exceptions, removes its record; do not use `call` afterwards.
    /// Returns false if no list matches the state.
    virtual bool createCallEntryAndRemoveCall(const Call* call, Call::states_t state) = 0;

    /// Deletes a missed entry of the party that an outgoing call has reached. The record stays.
    virtual void findAndDeleteMissedEntryWhenCalled(Call* call) = 0;
};

}  // namespace journal
