#pragma once

#include "src/JournalServiceEvents/handlers/CallControlContext.h"

class CSTASystemStatusEvent;

namespace journal {

class Conferences;
struct CallLogReadiness;

/// Removes every call and conference when the switch reports that it has lost or reset its own state: it will
/// not report the end of the calls that were tracked until then. Creates no entries.
///
/// Call from the strand only.
class SystemStatusEvents {
public:
    /// Everything is borrowed and outlives this object.
    SystemStatusEvents(const CallControlContext& callControl, Conferences& conferences,
                       CallLogReadiness& readiness)
        : m_callControl(callControl), m_conferences(conferences), m_readiness(readiness) {}

    void handleCSTASystemStatusEvent(CSTASystemStatusEvent* event);

private:
    void resynchronise();

    CallControlContext m_callControl;
    Conferences& m_conferences;
    CallLogReadiness& m_readiness;
};

}  // namespace journal
