#include "host/data/LiveCallWriter.h"

#include <algorithm>
#include <utility>

#include "host/database/Database.h"
#include "platform/logging/Logging.h"

namespace host {

LiveCallWriter::LiveCallWriter(Database& database) : m_database(database), m_thread([this] { run(); }) {}

LiveCallWriter::~LiveCallWriter() {
    {
        const std::lock_guard lock(m_mutex);
        m_stopping = true;
    }
    m_wake.notify_all();
    m_thread.join();
}

void LiveCallWriter::add(Source& source) {
    const std::lock_guard lock(m_mutex);
    m_waiting.push_back(&source);
    // It is not woken while it waits for the end of a batch.
    if (m_waitsForWork) {
        m_wake.notify_all();
    }
}

void LiveCallWriter::callAt(Source& source, Clock::time_point time) {
    const std::lock_guard lock(m_mutex);
    m_calls.emplace(time, &source);
    if (m_waitsForWork && m_calls.begin()->second == &source) {
        m_wake.notify_all();
    }
}

void LiveCallWriter::leave(Source& source) {
    std::unique_lock lock(m_mutex);
    ++m_leaving;
    m_wake.notify_all();
    // A batch that has begun may lack the last change; the one after it has it, or the database refuses it.
    const unsigned long last = m_batches + 2;
    m_done.wait(lock, [&] { return !isBusyWith(source) || m_batches >= last; });
    std::erase(m_waiting, &source);
    std::erase_if(m_calls, [&source](const auto& each) { return each.second == &source; });
    m_done.wait(lock,
                [&] { return std::find(m_current.begin(), m_current.end(), &source) == m_current.end(); });
    std::erase(m_waiting, &source);
    std::erase_if(m_calls, [&source](const auto& each) { return each.second == &source; });
    --m_leaving;
}

/// Requires: m_mutex is held.
bool LiveCallWriter::isBusyWith(const Source& source) const {
    return std::find(m_waiting.begin(), m_waiting.end(), &source) != m_waiting.end() ||
           std::find(m_current.begin(), m_current.end(), &source) != m_current.end();
}

void LiveCallWriter::run() {
    std::unique_lock lock(m_mutex);
    while (!m_stopping) {
        if (m_waiting.empty()) {
            const Clock::time_point next =
                m_calls.empty() ? Clock::now() + std::chrono::hours(1) : m_calls.begin()->first;
            m_waitsForWork = true;
            m_wake.wait_until(lock, next);
            m_waitsForWork = false;
        } else {
            m_wake.wait_until(lock, m_nextBatch, [this] { return m_stopping || m_leaving > 0; });
            writeBatch(lock);
        }
        callDue(lock);
    }
}

void LiveCallWriter::callDue(std::unique_lock<std::mutex>& lock) {
    const Clock::time_point now = Clock::now();
    while (!m_calls.empty() && m_calls.begin()->first <= now) {
        Source* const source = m_calls.begin()->second;
        m_calls.erase(m_calls.begin());
        m_current = {source};
        lock.unlock();
        source->timeHasCome(now);
        lock.lock();
        m_current.clear();
        m_done.notify_all();
    }
}

void LiveCallWriter::writeBatch(std::unique_lock<std::mutex>& lock) {
    const std::size_t count = std::min(m_waiting.size(), kMostSources);
    const auto end = m_waiting.begin() + static_cast<std::ptrdiff_t>(count);
    m_current.assign(m_waiting.begin(), end);
    m_waiting.erase(m_waiting.begin(), end);
    const std::vector<Source*> sources = m_current;
    lock.unlock();
    write(sources);
    lock.lock();
    m_current.clear();
    m_nextBatch = Clock::now() + kBatchTime;
    ++m_batches;
    m_done.notify_all();
}

void LiveCallWriter::write(const std::vector<Source*>& sources) {
    const auto failure = m_database.note([&sources](DatabaseSession& session) {
        for (Source* const each : sources) {
            each->write(session);
        }
    });
    for (Source* const each : sources) {
        each->written(!failure);
    }
    if (!failure) {
        m_failed = false;
        return;
    }
    if (sources.size() > 1 && (!failure->isOfDatabase() || failure->mayBeOfOneWork())) {
        // The rows of one may be the reason; it must not stop the others.
        for (Source* const each : sources) {
            write({each});
        }
    } else if (!std::exchange(m_failed, true)) {
        logAppUni("Database", __FILE_NAME__, 2, __LINE__, "noting the live calls failed: %s",
                  failure->text.c_str());
    }
}

}  // namespace host
