#pragma once

#include "src/JournalServiceEvents/handlers/CallControlContext.h"

class CSTASystemStatusEvent;

namespace journal {

class Conferences;
struct CallLogReadiness;

/// Forgets every call and conference when the switch says that it has lost or reset its own state: what was followed
/// until then will never hear its end. No entries are made.
///
/// Threads: the line's strand.
class SystemStatusEvents {
public:
    /// Everything is borrowed and outlives this object.
    SystemStatusEvents(const CallControlContext& parts, Conferences& conferences, CallLogReadiness& readiness)
        : m_parts(parts), m_conferences(conferences), m_readiness(readiness) {}

    void handleCSTASystemStatusEvent(CSTASystemStatusEvent* event);

private:
    void resynchronise();

    CallControlContext m_parts;
    Conferences& m_conferences;
    CallLogReadiness& m_readiness;
};

}  // namespace journal
