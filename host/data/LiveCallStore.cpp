#include "host/data/LiveCallStore.h"

#include <SQLiteCpp/SQLiteCpp.h>

#include <sstream>

#include "host/data/LiveCallRows.h"
#include "host/database/Database.h"
#include "platform/logging/Logging.h"

namespace host {
namespace {

constexpr int kBusyMilliseconds = 500;

/// Commits without a flush. Checkpoints are left to the other connection, which flushes before them.
std::unique_ptr<SQLite::Database> connectionTo(const Database& database) {
    try {
        auto connection = std::make_unique<SQLite::Database>(database.file().string(), SQLite::OPEN_READWRITE,
                                                             kBusyMilliseconds);
        connection->exec("PRAGMA synchronous = NORMAL");
        connection->exec("PRAGMA wal_autocheckpoint = 0");
        connection->exec("PRAGMA secure_delete = ON");
        return connection;
    } catch (const SQLite::Exception& error) {
        throw DatabaseError(database.file().string() +
                            " cannot be opened for the live calls: " + error.what());
    }
}

CSTADevice deviceFrom(SQLite::Statement& row, int& column) {
    CSTADevice device;
    device.number = row.getColumn(column++).getString();
    device.name = row.getColumn(column++).getString();
    return device;
}

std::optional<PhoneCall::Time> timeFrom(SQLite::Statement& row, int& column) {
    const SQLite::Column value = row.getColumn(column++);
    return value.isNull() ? std::nullopt : std::optional(LiveCallRows::timeOf(value.getInt64()));
}

/// Numbers as one text, each followed by a line break, which no number contains.
std::string textOf(const std::set<std::string>& numbers) {
    std::string text;
    for (const std::string& number : numbers) {
        text += number + '\n';
    }
    return text;
}

std::set<std::string> numbersFrom(const std::string& text) {
    std::set<std::string> numbers;
    std::istringstream lines(text);
    for (std::string number; std::getline(lines, number);) {
        numbers.insert(number);
    }
    return numbers;
}

NotedCall callFrom(SQLite::Statement& row) {
    int column = 0;
    const auto flag = [&] { return row.getColumn(column++).getInt() != 0; };
    NotedCall noted;
    PhoneCall& call = noted.call;
    call.device = row.getColumn(column++).getString();
    call.callId = row.getColumn(column++).getString();
    call.firstEvent = timeFrom(row, column).value_or(PhoneCall::Time());
    call.role = static_cast<PhoneRole>(row.getColumn(column++).getInt());
    call.outgoing = flag();
    call.conference = flag();
    call.conferenceId = row.getColumn(column++).getString();
    call.markedMissed = flag();
    call.pickUp = flag();
    call.transferred = flag();
    call.elsewhere = flag();
    call.reason = static_cast<CallReason>(row.getColumn(column++).getInt());
    call.calling = deviceFrom(row, column);
    call.called = deviceFrom(row, column);
    call.redirecting = deviceFrom(row, column);
    call.partner = deviceFrom(row, column);
    call.others = numbersFrom(row.getColumn(column++).getString());
    call.established = timeFrom(row, column);
    call.lastEvent = timeFrom(row, column).value_or(PhoneCall::Time());
    noted.seen = timeFrom(row, column).value_or(PhoneCall::Time());
    noted.ended = timeFrom(row, column);
    noted.endApproximate = flag();
    return noted;
}

class Binder {
public:
    explicit Binder(SQLite::Statement& statement) : m_statement(statement) {}

    Binder& operator()(const std::string& text) {
        m_statement.bind(++m_last, text);
        return *this;
    }
    Binder& operator()(std::int64_t number) {
        m_statement.bind(++m_last, number);
        return *this;
    }
    Binder& operator()(bool flag) { return (*this)(std::int64_t{flag ? 1 : 0}); }
    Binder& operator()(PhoneCall::Time time) { return (*this)(LiveCallRows::numberOf(time)); }
    Binder& operator()(const std::optional<PhoneCall::Time>& time) {
        if (time) {
            return (*this)(*time);
        }
        m_statement.bind(++m_last);
        return *this;
    }
    Binder& operator()(const CSTADevice& device) { return (*this)(device.number)(device.name); }

private:
    SQLite::Statement& m_statement;
    int m_last = 0;
};

void writeRow(SQLite::Statement& insert, const std::string& line, const NotedCall& noted) {
    const PhoneCall& call = noted.call;
    insert.reset();
    Binder bind(insert);
    bind(line)(call.device)(call.callId)(call.firstEvent)(static_cast<std::int64_t>(call.role));
    bind(call.outgoing)(call.conference)(call.conferenceId)(call.markedMissed)(call.pickUp);
    bind(call.transferred)(call.elsewhere)(static_cast<std::int64_t>(call.reason));
    bind(call.calling)(call.called)(call.redirecting)(call.partner)(textOf(call.others));
    bind(call.established)(call.lastEvent)(noted.seen)(noted.ended)(noted.endApproximate);
    insert.exec();
}

}  // namespace

LiveCallStore::LiveCallStore(const Database& database, std::string line)
    : m_database(database),
      m_line(std::move(line)),
      m_generation(database.generation()),
      m_connection(connectionTo(database)),
      m_thread([this] { run(); }) {}

LiveCallStore::~LiveCallStore() {
    {
        const std::lock_guard lock(m_mutex);
        m_stopping = true;
    }
    m_wake.notify_all();
    m_thread.join();
}

std::vector<NotedCall> LiveCallStore::read() {
    std::vector<NotedCall> calls;
    const std::lock_guard lock(m_mutex);
    try {
        SQLite::Statement rows(*m_connection, LiveCallRows::kRead);
        rows.bind(1, m_line);
        while (rows.executeStep()) {
            calls.push_back(callFrom(rows));
        }
    } catch (const SQLite::Exception& error) {
        logAppUni("Database", __FILE_NAME__, 2, __LINE__, "reading the live calls failed: %s", error.what());
    }
    for (const NotedCall& each : calls) {
        m_calls.insert_or_assign(keyOf(each.call), each);
    }
    return calls;
}

void LiveCallStore::store(const PhoneCall& call) {
    const std::lock_guard lock(m_mutex);
    const PhoneCallKey key = keyOf(call);
    m_calls[key].call = call;
    m_removed.erase(key);
    m_filed.erase(key);
    m_changed.insert(key);
    m_wake.notify_all();
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
            m_wake.notify_all();
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
        m_wake.notify_all();
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
    m_wake.notify_all();
}

/// Requires: m_mutex is held.
void LiveCallStore::keepKnown(const DeliveryContext::EndedCall& ended) {
    if (!m_calls.contains(ended.call)) {
        return;
    }
    m_heldBack.emplace_back(Clock::now() + kHeldBack, ended.call);
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

void LiveCallStore::run() {
    std::unique_lock lock(m_mutex);
    while (!m_stopping || !isIdle()) {
        if (isIdle()) {
            const auto next =
                m_heldBack.empty() ? Clock::now() + std::chrono::hours(1) : m_heldBack.front().first;
            m_wake.wait_until(lock, next, [this] { return m_stopping || !isIdle(); });
            removeOverdue(Clock::now());
            continue;
        }
        m_wake.wait_for(lock, kBatchTime, [this] { return m_stopping; });
        const bool last = m_stopping;
        lock.unlock();
        const bool done = writeBatch();
        lock.lock();
        if (!done && last) {
            return;
        }
        removeOverdue(Clock::now());
    }
}

LiveCallStore::Batch LiveCallStore::takeBatch() {
    const std::lock_guard lock(m_mutex);
    Batch batch;
    for (const PhoneCallKey& key : std::exchange(m_changed, {})) {
        batch.written.push_back(m_calls.at(key));
    }
    batch.removed = std::exchange(m_removed, {});
    return batch;
}

void LiveCallStore::removeOverdue(Clock::time_point now) {
    while (!m_heldBack.empty() && m_heldBack.front().first <= now) {
        remove(m_heldBack.front().second);
        m_heldBack.pop_front();
    }
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

bool LiveCallStore::writeBatch() noexcept {
    Batch batch;
    try {
        if (const unsigned generation = m_database.generation(); generation != m_generation) {
            m_connection = connectionTo(m_database);
            m_generation = generation;
            markAllChanged();
        }
        SQLite::Transaction transaction(*m_connection, SQLite::TransactionBehavior::IMMEDIATE);
        batch = takeBatch();
        write(batch);
        transaction.commit();
        m_failed = false;
        return true;
    } catch (const std::exception& error) {
        if (!std::exchange(m_failed, true)) {
            logAppUni("Database", __FILE_NAME__, 2, __LINE__, "noting the live calls failed: %s",
                      error.what());
        }
    }
    restore(batch);
    return false;
}

void LiveCallStore::write(const Batch& batch) {
    SQLite::Statement insert(*m_connection, LiveCallRows::kWrite);
    for (const NotedCall& each : batch.written) {
        writeRow(insert, m_line, each);
    }
    SQLite::Statement erase(*m_connection, LiveCallRows::kRemove);
    for (const PhoneCallKey& key : batch.removed) {
        erase.reset();
        Binder bind(erase);
        bind(m_line)(key.device)(key.callId)(key.firstEvent);
        erase.exec();
    }
}

}  // namespace host
