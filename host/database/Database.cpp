#include "host/database/Database.h"

#include <sqlite3.h>

#include <algorithm>
#include <thread>
#include <utility>
#include <vector>

#include "host/database/DatabaseConnection.h"
#include "host/database/LogCheckpoint.h"
#include "host/database/Schema.h"
#include "platform/logging/Logging.h"

namespace host {
namespace {

constexpr std::chrono::milliseconds kShortWait = DatabaseWriter::kShortWait;
/// The time between attempts to store what is kept.
constexpr std::chrono::milliseconds kBetweenStores{250};
/// The pages of the log that a checkpoint may move while changes wait, and how often it moves more before it.
constexpr int kFewPages = 200;
constexpr int kRunsAside = 8;

ChangeOutcome outcomeOf(bool kept) {
    return kept ? ChangeOutcome::eKept : ChangeOutcome::eRefused;
}

/// A mutex with a time limit makes ThreadSanitizer report false alarms.
bool lockWithin(std::unique_lock<std::mutex>& lock, std::chrono::milliseconds time) {
    constexpr std::chrono::milliseconds kPause{2};
    for (const auto end = std::chrono::steady_clock::now() + time; !lock.try_lock();) {
        if (std::chrono::steady_clock::now() >= end) {
            return false;
        }
        std::this_thread::sleep_for(kPause);
    }
    return true;
}

}  // namespace

Database::Database(const std::filesystem::path& file) : Database(file, Options()) {}

Database::Database(const std::filesystem::path& file, Options options)
    : m_file(std::filesystem::absolute(file)),
      m_writer(m_file, options.busyTime),
      m_checkpoint(m_file, m_writer.place()) {}

Database::~Database() = default;

void Database::setLogListener(std::function<void()> listener) {
    const std::lock_guard lock(m_mutex);
    m_writer.setLogListener(std::move(listener));
}

void Database::checkpoint() noexcept {
    static_cast<void>(guarded("moving the log of the database into its file", false, [this] {
        const std::lock_guard checkpointLock(m_checkpointMutex);
        if (!m_writer.isInPlace()) {
            return;
        }
        // While a run waits for the disk, the log grows by what the next one moves.
        int moved = 0;
        for (int runs = 0, before = -kFewPages; moved - before >= kFewPages && runs < kRunsAside; ++runs) {
            before = moved;
            moved = m_checkpoint.run(m_writer.generation());
        }
        // The few pages that were written meanwhile. Only a log that is moved whole is used from its begin
        // again.
        const std::lock_guard lock(m_mutex);
        m_writer.connection().checkpoint();
    }));
}

bool Database::read(const char* what, const Work& work) noexcept {
    return guarded(what, false, [&] {
        const std::lock_guard lock(m_mutex);
        carryOut(m_writer.connection(), "BEGIN", work);
    });
}

bool Database::readAside(const char* what, const Work& work) noexcept {
    makeDeferred();
    return readAsideSoon(what, work);
}

bool Database::readAsideSoon(const char* what, const Work& work) noexcept {
    const bool done = guarded(what, false, [&] {
        m_writer.readers().run([&work](DatabaseConnection& reader) { carryOut(reader, "BEGIN", work); });
    });
    truncateLogIfDue();
    return done;
}

RowChanges& Database::rowChanges() noexcept {
    if (const std::unique_lock lock(m_mutex, std::try_to_lock); lock.owns_lock()) {
        if (DatabaseFailure::of([this] { m_writer.noteForeignChanges(); })) {
            m_writer.rowChanges().noteAll();
            m_writer.rowChanges().endTransaction();
        }
    }
    return m_writer.rowChanges();
}

bool Database::write(const char* what, const Work& work) noexcept {
    bool done = false;
    measured(0, [&] {
        static_cast<void>(storeKept());
        done = guarded(what, true, [&] {
            const std::lock_guard lock(m_mutex);
            if (m_kept.size() > 0 && !m_kept.isHopelessAndAlone()) {
                throw std::runtime_error("earlier changes are not stored yet");
            }
            m_writer.transact(work, true);
            if (m_kept.size() > 0) {
                giveUpFirst(m_keptFor);
            }
        });
    });
    return done;
}

std::optional<DatabaseFailure> Database::note(const Work& work) noexcept {
    const std::lock_guard lock(m_mutex);
    return m_writer.transactSoon(work, false);
}

void Database::measured(std::size_t calls, const std::function<void()>& write) {
    const auto begin = Clock::now();
    write();
    if (m_writeListener) {
        m_writeListener(Clock::now() - begin, calls);
    }
    truncateLogIfDue();
}

void Database::makeDeferred() noexcept {
    if (m_writer.hasDeferred()) {
        std::unique_lock lock(m_mutex, std::defer_lock);
        if (lockWithin(lock, kShortWait)) {
            // If it fails, the next transaction repeats it.
            static_cast<void>(m_writer.transactSoon([](Session&) {}, false));
        }
    }
}

Database::Outcome Database::writeOrKeep(const std::shared_ptr<DatabaseChange>& change) noexcept {
    Outcome outcome = Outcome::eRefused;
    measured(change->calls, [&] {
        try {
            outcome = changeOrKeep(change);
        } catch (const std::exception& error) {
            failed(change->what, true, {0, error.what()});
        }
    });
    if (outcome == Outcome::eRefused) {
        m_kept.countLost(*change);
        change->finish(false);
    }
    return outcome;
}

Database::Outcome Database::changeOrKeep(const std::shared_ptr<DatabaseChange>& change) {
    if (const auto kept = m_kept.addBehindOthers(change)) {
        const auto now = Clock::now();
        if (now >= m_nextStore.load()) {
            m_nextStore = now + kBetweenStores;
            static_cast<void>(storeFirst());
        }
        return outcomeOf(*kept);
    }
    CommitQueue::Waiting waiting(change);
    m_commits.commit(waiting);
    return waiting.outcome;
}

/// Makes the changes of a group in one transaction. Requires: m_mutex is held.
void Database::commit(CommitQueue::Group group) noexcept {
    const auto attempt = [this](CommitQueue::Waiting& waiting, const auto& action) {
        if (const auto failure = DatabaseFailure::of(action)) {
            failed(waiting.change()->what, true, *failure);
        }
    };
    if (group.size() == 1) {
        CommitQueue::Waiting& only = *group.front();
        attempt(only, [&] {
            if (!keepOrDefer(only)) {
                settle(only, DatabaseFailure::of([&] { m_writer.transact(*only.change()); }));
            }
        });
        return;
    }
    std::vector<CommitQueue::Waiting*> made;
    std::vector<DatabaseWriter::Grouped> changes;
    for (CommitQueue::Waiting* const each : group) {
        attempt(*each, [&] {
            made.reserve(group.size());
            changes.reserve(group.size());
            if (!keepOrDefer(*each)) {
                made.push_back(each);
                changes.push_back({.change = each->change().get()});
            }
        });
    }
    if (!changes.empty()) {
        m_writer.transact(changes);
    }
    for (std::size_t at = 0; at < made.size(); ++at) {
        attempt(*made[at], [&] { settle(*made[at], changes[at].failure); });
    }
}

/// Returns true if the change needs no transaction now. Requires: m_mutex is held.
bool Database::keepOrDefer(CommitQueue::Waiting& waiting) {
    if (const auto kept = m_kept.addBehindOthers(waiting.change())) {
        waiting.outcome = outcomeOf(*kept);
        return true;
    }
    if (!m_writer.isMinor(*waiting.change())) {
        return false;
    }
    m_writer.defer(waiting.change());
    waiting.outcome = Outcome::eStored;
    return true;
}

/// Sets the outcome of a change that was stored or has failed. Requires: m_mutex is held.
void Database::settle(CommitQueue::Waiting& waiting, const std::optional<DatabaseFailure>& failure) {
    const std::shared_ptr<DatabaseChange>& change = waiting.change();
    if (!failure) {
        waiting.outcome = Outcome::eStored;
        m_health.succeeded(change->what, true);
        change->finish(true);
        return;
    }
    failed(change->what, true, *failure);
    if (!failure->isOfDatabase()) {
        return;
    }
    const bool kept = m_kept.add(change);
    if (kept) {
        logAppUni("Database", __FILE_NAME__, 2, __LINE__, "%s is kept in memory and repeated",
                  change->what.c_str());
        m_keptFor = failure->text;
    }
    waiting.outcome = outcomeOf(kept);
}

bool Database::storeKept() noexcept {
    bool goesOn = true;
    const auto failure = DatabaseFailure::of([&] {
        while (goesOn && m_kept.size() > 0) {
            goesOn = storeFirst();
        }
    });
    truncateLogIfDue();
    return !failure && goesOn;
}

/// Returns false if the first kept change cannot be stored now.
bool Database::storeFirst() {
    std::unique_lock lock(m_mutex, std::defer_lock);
    if (!lockWithin(lock, kShortWait)) {
        return false;
    }
    const std::deque<KeptChanges::Kept> kept = m_kept.first(2);
    if (kept.empty()) {
        return true;
    }
    DatabaseChange& first = *kept.front().change;
    // Each change is a transaction of its own; the last flushes all of them.
    const bool isLast = kept.size() == 1;
    if (const auto failure = m_writer.transactSoon(first.work, isLast)) {
        return passFirst(kept, *failure);
    }
    m_health.succeeded(first.what, true);
    m_kept.remove(0, false);
    m_isUnflushed = !isLast;
    first.finish(true);
    if (isLast) {
        m_keptFor.clear();
        logAppUni("Database", __FILE_NAME__, 4, __LINE__, "the changes that were kept are stored");
    }
    return true;
}

/// Drops a change that is wrong itself, or that fails while the one after it can be made. Returns true if it
/// did. Requires: m_mutex is held.
bool Database::passFirst(const std::deque<KeptChanges::Kept>& kept, const DatabaseFailure& failure) {
    DatabaseChange& first = *kept.front().change;
    if (m_keptFor != failure.text) {
        m_keptFor = failure.text;
        failed(first.what, true, failure);
    } else {
        m_health.failed(first.what, true, failure.code);
    }
    bool isLost = !failure.isOfDatabase();
    if (!isLost && m_kept.noteFailure(failure.mayBeOfOneWork()) && kept.size() > 1 &&
        !m_writer.transactSoon(kept[1].change->work, true)) {
        m_kept.remove(1, false);
        m_isUnflushed = false;
        kept[1].change->finish(true);
        isLost = true;
    }
    if (isLost) {
        giveUpFirst(failure.text);
        if (m_kept.size() == 0 && std::exchange(m_isUnflushed, false)) {
            m_logIsDue = true;
            emptyLog();  // flushes what was stored before
        }
    }
    return isLost;
}

/// Requires: m_mutex is held.
void Database::giveUpFirst(const std::string& reason) {
    const std::shared_ptr<DatabaseChange> first = m_kept.first(1).front().change;
    logAppUni("Database", __FILE_NAME__, 2, __LINE__, "%s is given up: %s", first->what.c_str(),
              reason.c_str());
    m_kept.remove(0, true);
    first->finish(false);
}

bool Database::maintain() noexcept {
    if (const std::unique_lock lock(m_mutex, std::try_to_lock); lock.owns_lock()) {
        if (const auto failure = DatabaseFailure::of([this] { m_writer.requireFile(); })) {
            failed("putting the database back", true, *failure);
        }
    }
    makeDeferred();
    return storeKept();
}

bool Database::healthy() const noexcept {
    return m_health.healthy() && m_writer.isInPlace() && m_kept.size() == 0;
}

bool Database::probe() noexcept {
    if (!maintain()) {
        return healthy();
    }
    const bool doubtful = m_health.writeFailed();
    static_cast<void>(write("probing the database", [doubtful](Session& session) {
        static_cast<void>(session.query("SELECT count(*) FROM setting").next());
        if (doubtful) {
            // Taking the lock does not detect a full disk: write a value that changes nothing.
            session.query(("PRAGMA user_version = " + std::to_string(Schema::version())).c_str()).run();
        }
    }));
    return healthy();
}

void Database::truncateLog() noexcept {
    m_logIsDue = true;
    m_nextAttempt = std::chrono::steady_clock::time_point();
    truncateLogIfDue();
}

void Database::truncateLogIfDue() noexcept {
    constexpr std::chrono::seconds kBetweenAttempts{1};
    const auto now = std::chrono::steady_clock::now();
    if (m_writer.takeEmptiesLog()) {
        m_nextAttempt = Clock::time_point();
        m_logIsDue = true;
    }
    if (m_logIsDue && now >= m_nextAttempt.load()) {
        m_nextAttempt = now + kBetweenAttempts;
        const std::lock_guard lock(m_mutex);
        emptyLog();
    }
}

/// Requires: m_mutex is held.
void Database::emptyLog() noexcept {
    static_cast<void>(guarded("emptying the log of the database", false,
                              [this] { m_logIsDue = !m_writer.connection().truncateLog(); }));
}

void Database::removeMigrationCopy() noexcept {
    static_cast<void>(guarded("removing the copy of the older version", false, [this] {
        for (int version = 0; version < Schema::version(); ++version) {
            const std::filesystem::path copy = DatabaseConnection::copyOf(m_file, version);
            std::filesystem::remove(copy);
            std::filesystem::remove(copy.string() + ".unfinished");
        }
    }));
}

bool Database::guarded(const char* what, bool isWrite, const std::function<void()>& work) noexcept {
    const auto failure = DatabaseFailure::of(work);
    if (failure) {
        failed(what, isWrite, *failure);
    } else {
        m_health.succeeded(what, isWrite);
    }
    return !failure;
}

void Database::failed(const std::string& what, bool isWrite, const DatabaseFailure& failure) noexcept {
    m_health.failed(what, isWrite, failure.code);
    m_failures.write(what, failure.text);
}

}  // namespace host
