#pragma once

#include <cstddef>
#include <mutex>
#include <set>
#include <string>

class CSTAEvent;

namespace host {

/// The live calls of the line, counted from the events of the switch. For display only.
///
/// A call is live from the first event that names it until its own connection ends. An event that reports
/// that a party leaves does not begin a call, so a late event does not bring a finished call back.
///
/// Thread-safe.
class LiveCalls {
public:
    void update(const CSTAEvent& event);
    /// Removes all calls. For a line that is no longer monitored, because the end of its calls is not
    /// reported.
    void clear();

    [[nodiscard]] std::size_t count() const;

private:
    void add(const std::string& callId);

    mutable std::mutex m_mutex;
    // Guarded by m_mutex.
    std::set<std::string> m_callIds;
};

}  // namespace host
