#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <mutex>
#include <set>
#include <string>
#include <utility>

#include "host/database/DatabaseSession.h"
#include "host/journal-events/JournalEvent.h"
#include "journal-items/ListTraits.h"

namespace host {

/// Adds the events of one line to the table `webhook_event`, each in the transaction of the change that it is
/// about. It exists only if there is a webhook.
///
/// Thread-safe. The operations with a session throw if the database fails.
class EventQueue {
public:
    /// `wanted` are the events that some webhook wants; others are not added.
    EventQueue(std::string line, std::set<JournalEventKind> wanted)
        : m_line(std::move(line)), m_wanted(std::move(wanted)) {}

    /// Sets what `committed` calls, which must not block; an empty one for none. When it returns, the former
    /// listener is called no more.
    void setListener(std::function<void()> listener);

    [[nodiscard]] const std::string& line() const noexcept { return m_line; }
    [[nodiscard]] bool wants(JournalEventKind kind) const { return m_wanted.contains(kind); }

    /// `call` is the row of the filed call that the event is about.
    void addOfCall(DatabaseSession& session, JournalEventKind kind, std::int64_t call) const;
    void addListDeleted(DatabaseSession& session, ListName list) const;
    /// Has no effect if the event was added before.
    void add(DatabaseSession& session, const LiveCallEvent& event) const;

    /// Call it after a transaction that may have added events. It must not be called inside.
    void committed() const;

private:
    // Constant after construction.
    const std::string m_line;
    const std::set<JournalEventKind> m_wanted;

    mutable std::atomic<bool> m_hasNew{false};

    mutable std::mutex m_mutex;
    // Guarded by m_mutex.
    std::function<void()> m_listener;
};

/// Removes the parties whose number `matches` from the events that wait: the events of their own calls, and
/// their part in those of others. Call it in a transaction.
void eraseFromEvents(DatabaseSession& session, const std::string& line,
                     const std::function<bool(const std::string&)>& matches);

}  // namespace host
