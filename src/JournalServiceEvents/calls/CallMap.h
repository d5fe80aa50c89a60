#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <string>

#include "platform/sync/CriticalSection.h"
#include "platform/sync/NestableSemaphore.h"
#include "src/JournalServiceEvents/calls/Call.h"

namespace journal {

/// The calls that exist now, by call id. Owns the records.
///
/// Requires: `m_callMapLock` is held from the look-up until the last use of the record. The thread that holds
/// the lock may take it again. Lock order: call map, then the change lock of the lists, then notifier, then
/// one list.
class CallMap {
public:
    using Section = CriticalSection<NestableSemaphore>;

    CallMap() = default;
    CallMap(const CallMap&) = delete;
    CallMap& operator=(const CallMap&) = delete;
    ~CallMap() = default;

    /// Returns the record, borrowed until it is removed, or null.
    [[nodiscard]] Call* findCallFromId(const std::string& callId) const;
    /// Takes ownership of `call` and returns the record that the map has under the id. An existing record is
    /// kept, and `call` is freed.
    Call* insertEntryToCallMap(const std::string& callId, std::unique_ptr<Call> call);
    /// Returns false if there is no such call.
    bool removeCall(const std::string& callId);
    void removeAllCalls();
    [[nodiscard]] std::size_t getNumberOfCalls() const noexcept { return m_callMap.size(); }

    NestableSemaphore m_callMapLock;

private:
    // Guarded by m_callMapLock.
    std::map<std::string, std::unique_ptr<Call>> m_callMap;
};

}  // namespace journal
