#pragma once

#include <cstddef>
#include <mutex>
#include <set>
#include <string>

class CSTAEvent;

namespace host {

/// The calls of the line that are up just now, counted from the events of the switch: a figure to show, on which nothing
/// rests. A call is up from the first event that names it until the own connection to it is over; somebody's leaving it does
/// not begin one, so that what comes late does not bring it back.
///
/// Threads: any.
class LiveCalls {
public:
    void update(const CSTAEvent& event);
    /// The line is not monitored any more: nobody tells of calls that end.
    void clear();

    [[nodiscard]] std::size_t count() const;

private:
    void add(const std::string& callId);

    mutable std::mutex m_mutex;
    // Guarded by m_mutex.
    std::set<std::string> m_callIds;
};

}  // namespace host
