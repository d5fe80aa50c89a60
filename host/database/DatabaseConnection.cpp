#include "host/database/DatabaseConnection.h"

#include <sqlite3.h>

#include <SQLiteCpp/Backup.h>

#include <algorithm>
#include <atomic>
#include <stdexcept>
#include <system_error>

#include "host/database/DatabaseError.h"
#include "host/database/DatabaseFailure.h"
#include "host/database/LogFileSystem.h"
#include "host/database/PrivateFile.h"
#include "host/database/Schema.h"
#include "host/search/SearchText.h"
#include "platform/logging/Logging.h"

namespace host {
namespace {

/// One thread at a time uses a connection, so that SQLite takes no lock of its own in each operation.
constexpr int kUnlocked = SQLITE_OPEN_NOMUTEX;

std::string_view textOf(sqlite3_value* value) {
    const auto* const bytes = static_cast<const char*>(sqlite3_value_blob(value));
    return bytes == nullptr ? std::string_view()
                            : std::string_view(bytes, static_cast<std::size_t>(sqlite3_value_bytes(value)));
}

void searchText(sqlite3_context* context, int /*count*/, sqlite3_value** values) {
    try {
        const std::string text = SearchText::searchable(textOf(values[0]), textOf(values[1]));
        sqlite3_result_text64(context, text.data(), text.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
    } catch (const std::exception& error) {
        sqlite3_result_error(context, error.what(), -1);
    }
}

}  // namespace

DatabaseConnection::DatabaseConnection(const std::filesystem::path& file, std::chrono::milliseconds busyTime)
    : m_file(file),
      m_busyMilliseconds(static_cast<int>(busyTime.count())),
      m_database(file.string(), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE | kUnlocked, m_busyMilliseconds,
                 logFileSystem()) {
    refuseForeign();
    refuseDamaged();
    configure();
    addSearchText();
    migrate();
    followRows();
    followTransactions();
}

DatabaseConnection::DatabaseConnection(const std::filesystem::path& file, std::chrono::milliseconds busyTime,
                                       ReadOnly /*how*/)
    : m_file(file),
      m_busyMilliseconds(static_cast<int>(busyTime.count())),
      m_database(file.string(), SQLite::OPEN_READONLY | kUnlocked, m_busyMilliseconds) {
    // The calls of a thousand entries are on as many pages.
    m_database.exec("PRAGMA cache_size = -16384");
    m_database.exec("PRAGMA trusted_schema = OFF");
    addSearchText();
}

std::filesystem::path DatabaseConnection::copyOf(const std::filesystem::path& file, int version) {
    return file.string() + ".version-" + std::to_string(version);
}

std::uint64_t DatabaseConnection::newSerial() noexcept {
    static std::atomic<std::uint64_t> last{0};
    return ++last;
}

Query DatabaseConnection::query(const char* sql) {
    auto found = m_statements.find(std::string_view(sql));
    if (found == m_statements.end()) {
        found = m_statements.try_emplace(sql, m_database, sql).first;
    }
    Prepared& prepared = found->second;
    if (prepared.inUse) {
        throw std::logic_error(std::string("in use already: ") + sql);
    }
    prepared.statement.clearBindings();
    return {prepared.statement, prepared.inUse};
}

std::int64_t DatabaseConnection::dataVersion() {
    Query version = query("PRAGMA data_version");
    return version.next() ? version.number() : 0;
}

bool DatabaseConnection::truncateLog() {
    m_database.setBusyTimeout(0);
    const int busy = number("PRAGMA wal_checkpoint(TRUNCATE)");
    m_database.setBusyTimeout(m_busyMilliseconds);
    return busy == 0;
}

void DatabaseConnection::checkpoint() noexcept {
    sqlite3_wal_checkpoint_v2(m_database.getHandle(), nullptr, SQLITE_CHECKPOINT_PASSIVE, nullptr, nullptr);
}

void DatabaseConnection::followTransactions() {
    sqlite3_rollback_hook(
        m_database.getHandle(),
        [](void* self) {
            auto& connection = *static_cast<DatabaseConnection*>(self);
            connection.noteRolledBack();
            if (connection.m_changes != nullptr) {
                connection.m_changes->endTransaction();
            }
        },
        this);
    sqlite3_wal_hook(
        m_database.getHandle(),
        [](void* self, sqlite3* /*database*/, const char* /*name*/, int pages) {
            auto& connection = *static_cast<DatabaseConnection*>(self);
            if (connection.m_changes != nullptr) {
                connection.m_changes->endTransaction();
            }
            connection.logHasGrown(pages);
            return SQLITE_OK;
        },
        this);
}

/// Where a reader keeps the log from being used from its begin again, it is tried once for each `kLogStep`
/// pages, not at each commit.
void DatabaseConnection::logHasGrown(int pages) noexcept {
    m_logDue = pages < m_logPages ? kLongLog : m_logDue;
    m_logPages = pages;
    if (pages < m_logDue) {
        return;
    }
    if (!m_logListener || pages >= kVeryLongLog) {
        checkpoint();
    } else if (DatabaseFailure::of(m_logListener)) {
        return;  // without memory for it the next commit calls it again
    }
    m_logDue = pages + kLogStep;
}

void DatabaseConnection::setBusyTime(std::chrono::milliseconds time) noexcept {
    sqlite3_busy_timeout(m_database.getHandle(), static_cast<int>(time.count()));
}

void DatabaseConnection::setFlushing(bool flushes) {
    if (flushes != m_flushes) {
        query(flushes ? "PRAGMA synchronous = FULL" : "PRAGMA synchronous = NORMAL").run();
        m_flushes = flushes;
    }
}

void DatabaseConnection::copyTo(const std::filesystem::path& file) {
    SQLite::Database target(file.string(), SQLite::OPEN_READWRITE);
    if (const int state = SQLite::Backup(target, m_database).executeStep(); state != SQLITE_DONE) {
        throw SQLite::Exception("it is locked by another program", state);
    }
}

void DatabaseConnection::rollBack() noexcept {
    if (isInTransaction()) {
        m_database.tryExec("ROLLBACK");
    }
}

bool DatabaseConnection::isInTransaction() const noexcept {
    return sqlite3_get_autocommit(m_database.getHandle()) == 0;
}

int DatabaseConnection::number(const char* sql) {
    return m_database.execAndGet(sql).getInt();
}

void DatabaseConnection::refuseForeign() {
    const int version = number("PRAGMA user_version");
    const bool empty = version == 0 && number("SELECT count(*) FROM sqlite_schema") == 0;
    if (!empty && number("PRAGMA application_id") != Schema::kApplicationId) {
        throw DatabaseError(m_file.string() +
                            " is a database of another program; choose another directory with --data DIR");
    }
    if (version > Schema::version()) {
        throw DatabaseError(
            m_file.string() + " was written by a newer version of this program (its tables have version " +
            std::to_string(version) + ", this program knows " + std::to_string(Schema::version()) +
            "); use that version, or another directory with --data DIR");
    }
}

void DatabaseConnection::refuseDamaged() {
    const std::string finding = m_database.execAndGet("PRAGMA quick_check(1)").getString();
    if (finding != "ok") {
        throw SQLite::Exception(finding, SQLITE_CORRUPT);
    }
}

void DatabaseConnection::configure() {
    if (sqlite3_db_readonly(m_database.getHandle(), "main") != 0) {
        throw SQLite::Exception("no permission to write", SQLITE_READONLY);
    }
    // Without effect unless the file is empty.
    m_database.exec("PRAGMA page_size = " + std::to_string(Schema::kPageBytes));
    if (const std::string mode = m_database.execAndGet("PRAGMA journal_mode = WAL").getString();
        mode != "wal") {
        throw SQLite::Exception("the file system allows no write-ahead log", SQLITE_CANTOPEN);
    }
    m_database.exec("PRAGMA synchronous = FULL");
    // The inner pages of the indexes of a million calls, so that a filing reads few pages.
    m_database.exec("PRAGMA cache_size = -8192");
    // The program keeps the references itself: to check them would read further pages for each row.
    m_database.exec("PRAGMA foreign_keys = OFF");
    m_database.exec("PRAGMA trusted_schema = OFF");
    // A deleted row leaves no bytes in the file.
    m_database.exec("PRAGMA secure_delete = ON");
}

void DatabaseConnection::addSearchText() {
    constexpr int kFlags = SQLITE_UTF8 | SQLITE_DETERMINISTIC;
    if (sqlite3_create_function_v2(m_database.getHandle(), "search_text", 2, kFlags, nullptr, &searchText,
                                   nullptr, nullptr, nullptr) != SQLITE_OK) {
        throw SQLite::Exception("search_text cannot be added", SQLITE_ERROR);
    }
}

void DatabaseConnection::followRows() {
    SQLite::Statement last(m_database, "SELECT seq FROM sqlite_sequence WHERE name = 'call_item'");
    // The numbers of another connection do not come again.
    static std::atomic<std::uint64_t> connections{0};
    m_items.changes = ++connections << 40U;
    m_items.lastId = last.executeStep() ? last.getColumn(0).getInt64() : 0;
    sqlite3_update_hook(
        m_database.getHandle(),
        [](void* self, int operation, const char* /*database*/, const char* table, sqlite3_int64 id) {
            static_cast<DatabaseConnection*>(self)->noteRow(operation, table, id);
        },
        this);
}

void DatabaseConnection::noteRow(int operation, const char* table, std::int64_t id) noexcept {
    const std::string_view name = table;
    const bool isItem = name == "call_item";
    if (isItem && operation != SQLITE_UPDATE) {
        ++m_items.changes;
        m_items.lastId = operation == SQLITE_INSERT ? std::max(m_items.lastId, id) : m_items.lastId;
    }
    if (m_changes == nullptr) {
        return;
    }
    // A trigger changes the entry too when a call is added to it or taken from it.
    if (isItem || (name == "call" && operation == SQLITE_UPDATE)) {
        m_changes->note({isItem ? RowChanges::Table::eItem : RowChanges::Table::eCall, id});
    } else if (name == "contact" || (name == "party" && operation == SQLITE_UPDATE)) {
        m_changes->noteAll();
    }
}

void DatabaseConnection::migrate() {
    if (number("PRAGMA user_version") == Schema::version()) {
        return;
    }
    if (const int former = number("PRAGMA user_version"); former > 0) {
        keepCopy(former);
    }
    SQLite::Transaction transaction(m_database, SQLite::TransactionBehavior::IMMEDIATE);
    // Checked again, now that no other process can migrate at the same time.
    for (int version = number("PRAGMA user_version"); version < Schema::version(); ++version) {
        m_database.exec(Schema::step(version));
    }
    m_database.exec("PRAGMA application_id = " + std::to_string(Schema::kApplicationId));
    m_database.exec("PRAGMA user_version = " + std::to_string(Schema::version()));
    transaction.commit();
}

/// The copy holds what the older version of the program can read.
void DatabaseConnection::keepCopy(int version) {
    const std::filesystem::path copy = copyOf(m_file, version);
    const std::filesystem::path unfinished = copy.string() + ".unfinished";
    try {
        std::filesystem::remove(unfinished);
        makePrivateFile(unfinished);
        copyTo(unfinished);
        std::filesystem::rename(unfinished, copy);
    } catch (...) {
        std::error_code ignored;
        std::filesystem::remove(unfinished, ignored);
        throw;
    }
    logAppUni("Database", __FILE_NAME__, 4, __LINE__,
              "%s is migrated from version %d to %d; a copy stays in %s until the first clean end",
              m_file.c_str(), version, Schema::version(), copy.c_str());
}

}  // namespace host
