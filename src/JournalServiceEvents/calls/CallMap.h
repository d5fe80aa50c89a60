#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <string>

#include "platform/sync/CriticalSection.h"
#include "platform/sync/NestableSemaphore.h"
#include "src/JournalServiceEvents/calls/Call.h"

namespace journal {

/// The calls that exist now, by call id. It owns the records.
///
/// Threads: whoever uses it holds `m_callMapLock` from before the look-up until it is done with the record. The
/// thread that holds the lock may take it again. Lock order: call map, then the lists' `Change`, then notifier,
/// then one list.
class CallMap {
public:
    using Section = CriticalSection<NestableSemaphore>;

    CallMap() = default;
    CallMap(const CallMap&) = delete;
    CallMap& operator=(const CallMap&) = delete;
    ~CallMap() = default;

    /// The record, borrowed until it is removed, or null.
    [[nodiscard]] Call* findCallFromId(const std::string& callId) const;
    /// Takes `call` over and answers the record that the map now holds under the id. A record that was there
    /// already is kept, and `call` is freed.
    Call* insertEntryToCallMap(const std::string& callId, std::unique_ptr<Call> call);
    /// False when there is no such call.
    bool removeCall(const std::string& callId);
    void removeAllCalls();
    [[nodiscard]] std::size_t getNumberOfCalls() const noexcept { return m_callMap.size(); }

    NestableSemaphore m_callMapLock;

private:
    // Guarded by m_callMapLock.
    std::map<std::string, std::unique_ptr<Call>> m_callMap;
};

}  // namespace journal
