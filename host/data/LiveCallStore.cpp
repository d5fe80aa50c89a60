#include "host/data/LiveCallStore.h"

#include "host/data/LiveCallRows.h"
#include "host/database/Database.h"
#include "host/journal-events/EventQueue.h"

namespace host {

LiveCallStore::LiveCallStore(Database& database, LiveCallWriter& writer, std::string line,
                             const EventQueue* events)
    : m_database(database),
      m_writer(writer),
      m_line(std::move(line)),
      m_events(events),
      m_generation(database.generation()) {}

LiveCallStore::~LiveCallStore() {
    m_writer.leave(*this);
}

std::vector<NotedCall> LiveCallStore::read() {
    std::vector<NotedCall> calls;
    static_cast<void>(m_database.read("reading the live calls", [&](Database::Session& session) {
        calls = LiveCallRows(session, m_line).read();
    }));
    const std::lock_guard lock(m_mutex);
    for (const NotedCall& each : calls) {
        m_calls.insert_or_assign(keyOf(each.call), each);
    }
    return calls;
}

void LiveCallStore::store(const PhoneCall& call) {
    const std::lock_guard lock(m_mutex);
    const PhoneCallKey key = keyOf(call);
    if (m_events != nullptr) {
        const auto known = m_calls.find(key);
        noteEvent(known == m_calls.end() ? nullptr : &known->second.call, call);
    }
    m_calls[key].call = call;
    m_removed.erase(key);
    m_filed.erase(key);
    m_changed.insert(key);
    wake();
}

/// Requires: m_mutex is held, and there is a queue of events.
void LiveCallStore::noteEvent(const PhoneCall* before, const PhoneCall& after) {
    const auto kind = eventBetween(before, after);
    if (kind && m_events->wants(*kind)) {
        if (m_newEvents.size() == kMostNewEvents) {
            m_newEvents.pop_front();
        }
        m_newEvents.emplace_back(++m_lastEvent, liveCallEvent(*kind, after));
    }
}

std::uint64_t LiveCallStore::addEvents(DatabaseSession& session) {
    if (m_events == nullptr) {
        return 0;
    }
    const std::lock_guard lock(m_mutex);
    for (const auto& [number, event] : m_newEvents) {
        m_events->add(session, event);
    }
    return m_lastEvent;
}

void LiveCallStore::eventsAdded(std::uint64_t last) {
    if (m_events == nullptr) {
        return;
    }
    {
        const std::lock_guard lock(m_mutex);
        while (!m_newEvents.empty() && m_newEvents.front().first <= last) {
            m_newEvents.pop_front();
        }
    }
    m_events->committed();
}

void LiveCallStore::confirm(const PhoneCallKey& call, PhoneCall::Time time) {
    change(call, [time](NotedCall& noted) { noted.seen = time; });
}

void LiveCallStore::end(const PhoneCallKey& call, PhoneCall::Time time, bool approximate) {
    change(call, [&](NotedCall& noted) {
        noted.ended = time;
        noted.endApproximate = approximate;
    });
}

std::optional<NotedCall> LiveCallStore::ended(const PhoneCallKey& call) const {
    const std::lock_guard lock(m_mutex);
    const auto found = m_calls.find(call);
    return found != m_calls.end() && found->second.ended ? std::optional(found->second) : std::nullopt;
}

std::optional<NotedCall> LiveCallStore::ended(const std::string& callId) const {
    const std::lock_guard lock(m_mutex);
    std::optional<NotedCall> last;
    for (const auto& [key, noted] : m_calls) {
        const auto delivered = m_deliveredIds.find(key);
        const std::string& id = delivered == m_deliveredIds.end() ? key.callId : delivered->second;
        if (id == callId && noted.ended && (!last || last->ended < noted.ended)) {
            last = noted;
        }
    }
    return last;
}

/// Has no effect on a call that is not noted.
void LiveCallStore::change(const PhoneCallKey& call, const std::function<void(NotedCall&)>& action) {
    const std::lock_guard lock(m_mutex);
    const auto found = m_calls.find(call);
    if (found != m_calls.end()) {
        action(found->second);
        if (!m_filed.contains(call)) {
            m_changed.insert(call);
            wake();
        }
    }
}

void LiveCallStore::setFiled(const PhoneCallKey& call, bool filed) {
    const std::lock_guard lock(m_mutex);
    if (!m_calls.contains(call)) {
        return;
    }
    if (filed) {
        m_filed.insert(call);
        m_changed.erase(call);
    } else {
        m_filed.erase(call);
        m_changed.insert(call);
        wake();
    }
}

void LiveCallStore::delivered(const DeliveryContext& context) {
    const std::lock_guard lock(m_mutex);
    for (const DeliveryContext::EndedCall& each : context.ends) {
        if (each.filed || !each.mayBeFiledLater) {
            remove(each.call);
        } else {
            keepKnown(each);
        }
    }
    wake();
}

/// Gives what has changed to the writer. Requires: m_mutex is held.
void LiveCallStore::wake() {
    if (!m_isWaiting && !isIdle()) {
        m_isWaiting = true;
        m_writer.add(*this);
    }
}

/// Requires: m_mutex is held.
void LiveCallStore::keepKnown(const DeliveryContext::EndedCall& ended) {
    if (!m_calls.contains(ended.call)) {
        return;
    }
    m_heldBack.emplace_back(Clock::now() + kHeldBack, ended.call);
    if (m_heldBack.size() == 1) {
        m_writer.callAt(*this, m_heldBack.front().first);
    }
    if (!ended.deliveredId.empty()) {
        m_deliveredIds[ended.call] = ended.deliveredId;
    }
    // The journal has decided to file no call. The next run could decide otherwise, by other settings.
    if (!ended.mayBeHeldBack && m_filed.insert(ended.call).second) {
        m_changed.erase(ended.call);
        m_removed.insert(ended.call);
    }
}

/// Requires: m_mutex is held.
void LiveCallStore::remove(const PhoneCallKey& call) {
    m_calls.erase(call);
    m_deliveredIds.erase(call);
    m_changed.erase(call);
    if (m_filed.erase(call) == 0) {
        m_removed.insert(call);
    }
}

LiveCallStore::Batch LiveCallStore::takeBatch() {
    const std::lock_guard lock(m_mutex);
    m_isWaiting = false;
    Batch batch;
    for (const PhoneCallKey& key : m_changed) {
        batch.written.push_back(m_calls.at(key));
    }
    // Last, so that a failure above loses no change.
    batch.removed.swap(m_removed);
    m_changed.clear();
    return batch;
}

void LiveCallStore::timeHasCome(Clock::time_point now) {
    const std::lock_guard lock(m_mutex);
    while (!m_heldBack.empty() && m_heldBack.front().first <= now) {
        remove(m_heldBack.front().second);
        m_heldBack.pop_front();
    }
    if (!m_heldBack.empty()) {
        m_writer.callAt(*this, m_heldBack.front().first);
    }
    wake();
}

/// Marks the changes of a batch that was not written as changed again.
void LiveCallStore::restore(const Batch& batch) {
    const std::lock_guard lock(m_mutex);
    for (const NotedCall& each : batch.written) {
        if (m_calls.contains(keyOf(each.call)) && !m_filed.contains(keyOf(each.call))) {
            m_changed.insert(keyOf(each.call));
        }
    }
    for (const PhoneCallKey& key : batch.removed) {
        if (!m_calls.contains(key) || m_filed.contains(key)) {
            m_removed.insert(key);
        }
    }
}

/// The file was put back without what was written to the old one since.
void LiveCallStore::markAllChanged() {
    const std::lock_guard lock(m_mutex);
    for (const auto& [key, noted] : m_calls) {
        if (!m_filed.contains(key)) {
            m_changed.insert(key);
        }
    }
}

void LiveCallStore::write(DatabaseSession& session) {
    if (const unsigned generation = m_database.generation(); generation != m_generation) {
        m_generation = generation;
        markAllChanged();
    }
    // A transaction that was not committed has taken some already.
    restore(m_batch);
    m_batch = takeBatch();
    m_batchEvent = addEvents(session);
    LiveCallRows rows(session, m_line);
    for (const NotedCall& each : m_batch.written) {
        rows.write(each);
    }
    for (const PhoneCallKey& key : m_batch.removed) {
        rows.remove(key);
    }
}

void LiveCallStore::written(bool isStored) {
    const Batch batch = std::exchange(m_batch, {});
    if (isStored) {
        eventsAdded(m_batchEvent);
        return;
    }
    restore(batch);
    const std::lock_guard lock(m_mutex);
    m_isWaiting = false;
    wake();
}

}  // namespace host
