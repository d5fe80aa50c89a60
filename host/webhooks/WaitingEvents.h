#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "host/database/Database.h"
#include "host/journal-events/JournalEvent.h"
#include "host/webhooks/EventMessage.h"

namespace host {

/// The events of all lines that wait for one webhook: those that it wants in the table `webhook_event` after
/// its position, which is the row of the last event that it has got. A row that all webhooks which want
/// such events have got is deleted.
///
/// An event waits for three days at most, and no more than 10,000 wait. Older ones are dropped, and the next
/// message has their number.
///
/// One thread uses it. No operation throws; if the database fails, the log has the reason.
class WaitingEvents {
public:
    static constexpr std::chrono::hours kLongest{72};
    static constexpr std::int64_t kMost = 10'000;

    /// All are borrowed, and outlive the object; `digits` may be null.
    struct Source {
        Database& database;
        DigitAnalysisServiceIfc* digits = nullptr;
    };
    /// `key` names the webhook in the table `webhook`.
    WaitingEvents(const Source& source, std::string key, const std::set<JournalEventKind>& wanted);

    /// Reads the positions of all webhooks; that of a new one is after the last event. Deletes
    /// what other webhooks have left, which are configured no more. Returns false if the database fails.
    [[nodiscard]] static bool load(Database& database, const std::vector<WaitingEvents*>& all);
    /// Stores the positions that have changed, and deletes the events that all webhooks have
    /// got. What a power cut takes of that is delivered again. Returns false if the database fails.
    [[nodiscard]] static bool storePositions(Database& database, const std::vector<WaitingEvents*>& all);
    /// Deletes what is left of webhooks when none is configured any more.
    static void forget(Database& database);

    /// The message to send next; std::nullopt if none waits or the database fails.
    [[nodiscard]] std::optional<EventMessage> next();
    /// Call it when that message is delivered.
    void delivered(const EventMessage& message) noexcept;
    /// Drops the events that wait too long, or are too many; returns their number. Call it while no message
    /// is being sent.
    std::int64_t limit(std::chrono::system_clock::time_point now);

    /// The number of events that wait; std::nullopt if the database fails. Any thread may call.
    [[nodiscard]] std::optional<std::int64_t> count() const;

private:
    [[nodiscard]] std::int64_t countUpTo(Database::Session& session, std::int64_t last) const;
    void advance(std::int64_t position) noexcept;
    void store(Database::Session& session) const;
    static void removeDelivered(Database::Session& session, const std::vector<WaitingEvents*>& all,
                                std::int64_t after);

    // Constant after construction.
    Database& m_database;
    DigitAnalysisServiceIfc* const m_digits;
    const std::string m_key;
    const std::set<JournalEventKind> m_wanted;
    const std::string m_next;
    const std::string m_countUpTo;
    const std::string m_lastBefore;
    const std::string m_lastSurplus;

    std::atomic<std::int64_t> m_position{0};
    std::int64_t m_storedPosition = 0;
    std::int64_t m_dropped = 0;
    bool m_isChanged = false;
};

}  // namespace host
