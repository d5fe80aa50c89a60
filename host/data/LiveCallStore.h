#pragma once

#include <chrono>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "host/calls/LiveCallStoreIfc.h"
#include "host/data/LiveCallWriter.h"
#include "host/journal-events/JournalEvent.h"

namespace host {

class Database;
class EventQueue;

/// The live calls of one line in the table `live_call`. A `LiveCallWriter`, which lines may share, writes
/// what has changed.
///
/// Sequence of a call:
///  1. `store` notes it, also after each change.
///  2. `end` marks its row as ended.
///  3. The transaction that files the call removes the row (`SqliteDataAccess`, by the `DeliveryContext`)
///     and calls `setFiled`. The writer takes what has changed inside its own transaction, so that it never
///     writes the row of a call that is filed already: the next run would file the call again.
///  4. `delivered` drops the call here and removes the row of one that was not filed. A call that may be
///     filed later is dropped after `kHeldBack`; its row stays so long only if its event may be held back.
///
/// Thread-safe.
class LiveCallStore final : public LiveCallStoreIfc, private LiveCallWriter::Source {
public:
    /// Longer than the journal holds an event back.
    static constexpr std::chrono::seconds kHeldBack{10};

    /// All are borrowed and outlive the object. Without a webhook, `events` is null.
    LiveCallStore(Database& database, LiveCallWriter& writer, std::string line,
                  const EventQueue* events = nullptr);
    /// Writes what has changed.
    ~LiveCallStore() override;

    [[nodiscard]] std::vector<NotedCall> read() override;
    void store(const PhoneCall& call) override;
    void confirm(const PhoneCallKey& call, PhoneCall::Time time) override;
    void end(const PhoneCallKey& call, PhoneCall::Time time, bool approximate) override;
    [[nodiscard]] std::optional<NotedCall> ended(const PhoneCallKey& call) const override;
    [[nodiscard]] std::optional<NotedCall> ended(const std::string& callId) const override;
    void setFiled(const PhoneCallKey& call, bool filed) override;
    std::uint64_t addEvents(DatabaseSession& session) override;
    void eventsAdded(std::uint64_t last) override;
    void delivered(const DeliveryContext& context) override;

private:
    using Clock = std::chrono::steady_clock;
    /// While the database refuses them, the oldest events beyond this number are dropped.
    static constexpr std::size_t kMostNewEvents = 10'000;

    /// The changes of one batch: the rows to write and those to remove.
    struct Batch {
        std::vector<NotedCall> written;
        std::set<PhoneCallKey> removed;
    };

    void change(const PhoneCallKey& call, const std::function<void(NotedCall&)>& action);
    void noteEvent(const PhoneCall* before, const PhoneCall& after);
    void keepKnown(const DeliveryContext::EndedCall& ended);
    void remove(const PhoneCallKey& call);
    void wake();
    [[nodiscard]] bool isIdle() const {
        return m_changed.empty() && m_removed.empty() && m_newEvents.empty();
    }
    [[nodiscard]] Batch takeBatch();
    void markAllChanged();
    void restore(const Batch& batch);

    // LiveCallWriter::Source
    void write(DatabaseSession& session) override;
    void written(bool isStored) override;
    void timeHasCome(Clock::time_point now) override;

    // Constant after construction.
    Database& m_database;
    LiveCallWriter& m_writer;
    const std::string m_line;
    const EventQueue* const m_events;

    // The writing thread only.
    unsigned m_generation;
    /// The changes that the last `write` has taken, and the last of its events.
    Batch m_batch;
    std::uint64_t m_batchEvent = 0;

    mutable std::mutex m_mutex;
    // Guarded by m_mutex.
    std::map<PhoneCallKey, NotedCall> m_calls;
    std::set<PhoneCallKey> m_changed;
    std::set<PhoneCallKey> m_removed;
    /// Those of m_calls whose rows are removed, by a filing transaction or because they are not filed.
    std::set<PhoneCallKey> m_filed;
    std::deque<std::pair<Clock::time_point, PhoneCallKey>> m_heldBack;
    /// The ids under which the journal files those calls, if they are other ones.
    std::map<PhoneCallKey, std::string> m_deliveredIds;
    /// The events that are not stored yet, and their numbers.
    std::deque<std::pair<std::uint64_t, LiveCallEvent>> m_newEvents;
    std::uint64_t m_lastEvent = 0;
    /// The writer has it, and has not begun to write.
    bool m_isWaiting = false;
};

}  // namespace host
