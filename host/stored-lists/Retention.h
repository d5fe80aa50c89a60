#pragma once

#include <chrono>

#include "host/stored-lists/CallDeletion.h"

namespace host {

/// Deletes what is older than the time for which data is kept: calls with their entries, and callbacks.
/// Observers are notified; the switch is not. Thread-safe.
class Retention {
public:
    /// All are borrowed and outlive the object. `keep` of 0 keeps everything.
    Retention(StoredEntries& entries, CallDeletion& calls, std::chrono::days keep)
        : m_entries(entries), m_calls(calls), m_keep(keep) {}

    [[nodiscard]] bool isOn() const noexcept { return m_keep.count() > 0; }
    /// Deletes what is too old at `now`, in transactions of at most 1,000 rows.
    void apply(std::chrono::sys_seconds now);

private:
    void removeCallBacks(std::chrono::sys_seconds limit);

    StoredEntries& m_entries;
    CallDeletion& m_calls;
    const std::chrono::days m_keep;
};

}  // namespace host
