#pragma once

#include <cstddef>
#include <mutex>
#include <set>
#include <string>

class CSTAEvent;

namespace host {

/// The calls of the line that are up just now, counted from the events of the switch: a figure to show, on which nothing
/// rests. A call is up from the first event that names it until the own connection to it is over.
///
/// Threads: any.
class LiveCalls {
public:
    void follow(const CSTAEvent& event);
    /// The switch is gone: nobody tells of calls that end.
    void forget();

    [[nodiscard]] std::size_t count() const;

private:
    mutable std::mutex m_mutex;
    // Guarded by m_mutex.
    std::set<std::string> m_callIds;
};

}  // namespace host
