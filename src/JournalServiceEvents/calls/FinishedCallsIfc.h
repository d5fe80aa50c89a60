#pragma once

#include "src/JournalServiceEvents/calls/Call.h"

namespace journal {

/// Takes the calls that the state machine is done with. Called with the call-map lock held.
class FinishedCallsIfc {
public:
    FinishedCallsIfc() = default;
    FinishedCallsIfc(const FinishedCallsIfc&) = delete;
    FinishedCallsIfc& operator=(const FinishedCallsIfc&) = delete;
    virtual ~FinishedCallsIfc() = default;

    /// Files the call by the state that it has reached and removes its record, with few exceptions: afterwards the
    /// caller treats `call` as gone. True when a decision about an entry was made, false when the state
    /// fits no list.
    virtual bool createCallEntryAndRemoveCall(const Call* call, Call::states_t state) = 0;

    /// An outgoing call has reached its party: a missed entry of that party is settled. The record stays.
    virtual void findAndDeleteMissedEntryWhenCalled(Call* call) = 0;
};

}  // namespace journal
