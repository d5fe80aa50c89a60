#include "host/database/DatabaseCopy.h"

#include <fcntl.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <string>
#include <system_error>
#include <utility>

#include <SQLiteCpp/Backup.h>
#include <SQLiteCpp/SQLiteCpp.h>

#include "host/database/PrivateFile.h"
#include "host/database/Schema.h"

namespace host {
namespace {

constexpr int kPagesOfAStep = 2048;
constexpr int kBusyMilliseconds = 5000;
/// The files of a database: the log and its index go first, because they belong to no other database.
constexpr const char* kCompanions[] = {"-wal", "-shm", ""};

DatabaseError systemError(const std::string& what) {
    return DatabaseError(what + ": " + std::generic_category().message(errno));
}

/// A file of a temporary name beside the target, removed unless it gets the target's name.
class TemporaryFile {
public:
    explicit TemporaryFile(std::filesystem::path target)
        : m_target(std::move(target)), m_name(m_target.string() + ".unfinished-XXXXXX") {
        const int descriptor = ::mkostemp(m_name.data(), O_CLOEXEC);  // with mode 0600
        if (descriptor < 0) {
            throw systemError(m_target.string() + " cannot be written");
        }
        ::close(descriptor);
    }
    ~TemporaryFile() {
        if (!m_name.empty()) {
            ::unlink(m_name.c_str());
        }
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    [[nodiscard]] const std::string& name() const noexcept { return m_name; }

    /// Gives it the owner of `file`, or of its directory if there is no such file. Only root can; for others
    /// they are the same.
    void giveToOwnerOf(const std::filesystem::path& file) const {
        struct stat owner {};
        const std::filesystem::path directory = file.has_parent_path() ? file.parent_path() : ".";
        if (::stat(file.c_str(), &owner) != 0 && ::stat(directory.c_str(), &owner) != 0) {
            throw systemError(directory.string() + " cannot be read");
        }
        if (::geteuid() == 0 && ::chown(m_name.c_str(), owner.st_uid, owner.st_gid) != 0) {
            throw systemError(m_name + " cannot be given to the owner of " + file.string());
        }
    }

    void takeName() {
        flush(m_name);
        if (::rename(m_name.c_str(), m_target.c_str()) != 0) {
            throw systemError(m_target.string() + " cannot be written");
        }
        m_name.clear();
        flush(m_target.has_parent_path() ? m_target.parent_path().string() : ".");
    }

private:
    static void flush(const std::string& name) {
        const int descriptor = ::open(name.c_str(), O_RDONLY | O_CLOEXEC);
        const bool flushed = descriptor >= 0 && ::fsync(descriptor) == 0;
        ::close(descriptor);
        if (!flushed) {
            throw systemError(name + " cannot be written to the disk");
        }
    }

    const std::filesystem::path m_target;
    std::string m_name;
};

/// Throws if the copy is to end.
void report(const CopyProgress& progress, std::size_t done, std::size_t total) {
    if (!progress(done, total)) {
        throw DatabaseError("interrupted; no file was changed");
    }
}

void copyPages(SQLite::Database& from, SQLite::Database& to, const CopyProgress& progress) {
    // The open transaction keeps one state of the source, so that a write does not begin the copy again.
    from.exec("BEGIN");
    static_cast<void>(from.execAndGet("SELECT count(*) FROM sqlite_schema"));
    SQLite::Backup backup(to, from);
    for (int state = SQLITE_OK; state != SQLITE_DONE;) {
        state = backup.executeStep(kPagesOfAStep);
        if (state == SQLITE_BUSY || state == SQLITE_LOCKED) {
            throw SQLite::Exception("it is locked by another program", state);
        }
        const auto total = static_cast<std::size_t>(backup.getTotalPageCount());
        report(progress, total - static_cast<std::size_t>(backup.getRemainingPageCount()), total);
    }
}

/// Throws unless this version of the program can use the copy; `source` is for the text.
void check(SQLite::Database& copy, const std::string& source) {
    if (copy.execAndGet("PRAGMA application_id").getInt() != Schema::kApplicationId) {
        throw DatabaseError(source + " is no database of this program");
    }
    const int version = copy.execAndGet("PRAGMA user_version").getInt();
    if (version > Schema::version()) {
        throw DatabaseError(source +
                            " was written by a newer version of this program (its tables have version " +
                            std::to_string(version) + ", this program knows " +
                            std::to_string(Schema::version()) + "); use that version");
    }
    // With the indexes, which the start does not compare with their tables: a damaged copy must not replace a
    // good one.
    if (const std::string finding = copy.execAndGet("PRAGMA integrity_check(1)").getString();
        finding != "ok") {
        throw DatabaseError(source + " is damaged: " + finding);
    }
}

/// Ends a long check of the copy when the caller says so; `progress` outlives the connection.
void makeInterruptible(SQLite::Database& copy, const CopyProgress& progress) {
    constexpr int kSteps = 100'000;
    const auto isToEnd = [](void* given) { return (*static_cast<const CopyProgress*>(given))(1, 1) ? 0 : 1; };
    sqlite3_progress_handler(copy.getHandle(), kSteps, isToEnd, const_cast<CopyProgress*>(&progress));
}

void copyTo(const TemporaryFile& target, const std::filesystem::path& source, const CopyProgress& progress) {
    try {
        SQLite::Database from(source.string(), SQLite::OPEN_READONLY, kBusyMilliseconds);
        SQLite::Database to(target.name(), SQLite::OPEN_READWRITE);
        copyPages(from, to, progress);
        to.exec("PRAGMA journal_mode = DELETE");
        makeInterruptible(to, progress);
        check(to, source.string());
    } catch (const SQLite::Exception& error) {
        if (error.getErrorCode() == SQLITE_INTERRUPT) {
            report(progress, 1, 1);
        }
        throw DatabaseError(source.string() + " cannot be copied: " + error.what());
    }
}

/// The files of a database that another one replaces: moved back, all of them, unless they are kept.
class FormerFiles {
public:
    explicit FormerFiles(const std::filesystem::path& file) : m_file(file.string()), m_suffix(freeSuffix()) {}
    ~FormerFiles() {
        for (const std::string& name : m_moved) {
            static_cast<void>(std::rename((name + m_suffix).c_str(), name.c_str()));
        }
    }
    FormerFiles(const FormerFiles&) = delete;
    FormerFiles& operator=(const FormerFiles&) = delete;

    void moveAside() {
        for (const char* const companion : kCompanions) {
            const std::string name = m_file + companion;
            if (std::rename(name.c_str(), (name + m_suffix).c_str()) == 0) {
                m_moved.push_back(name);
            } else if (errno != ENOENT) {
                throw systemError(name + " cannot be renamed, the database is as it was");
            }
        }
    }
    /// Returns their names.
    std::vector<std::filesystem::path> keep() {
        std::vector<std::filesystem::path> kept;
        for (const std::string& name : std::exchange(m_moved, {})) {
            kept.emplace_back(name + m_suffix);
        }
        return kept;
    }

private:
    /// The first suffix of that kind that none of the files has yet.
    [[nodiscard]] std::string freeSuffix() const {
        std::string suffix = ".before-restore";
        const auto isTaken = [&](const char* companion) {
            return std::filesystem::exists(m_file + companion + suffix);
        };
        for (int count = 2; std::any_of(std::begin(kCompanions), std::end(kCompanions), isTaken); ++count) {
            suffix = ".before-restore." + std::to_string(count);
        }
        return suffix;
    }

    const std::string m_file;
    const std::string m_suffix;
    std::vector<std::string> m_moved;
};

}  // namespace

void copyDatabase(const std::filesystem::path& source, const std::filesystem::path& target,
                  const CopyProgress& progress) {
    std::error_code ignored;
    if (std::filesystem::equivalent(source, target, ignored)) {
        throw DatabaseError(target.string() + " is the database itself");
    }
    requireRegularFile(target);
    TemporaryFile copy(target);
    copyTo(copy, source, progress);
    copy.takeName();
}

void examineDatabase(const std::filesystem::path& file) {
    requireRegularFile(file);
    try {
        SQLite::Database database(file.string(), SQLite::OPEN_READONLY, kBusyMilliseconds);
        check(database, file.string());
    } catch (const SQLite::Exception& error) {
        throw DatabaseError(file.string() + " cannot be read: " + error.what());
    }
}

std::vector<std::filesystem::path> restoreDatabase(const std::filesystem::path& backup,
                                                   const std::filesystem::path& file,
                                                   const CopyProgress& progress) {
    std::error_code ignored;
    if (std::filesystem::equivalent(backup, file, ignored)) {
        throw DatabaseError(backup.string() + " is the database itself");
    }
    requireRegularFile(file);
    if (std::filesystem::exists(backup, ignored) && !std::filesystem::is_regular_file(backup, ignored)) {
        throw DatabaseError(backup.string() + " is not a regular file");
    }
    TemporaryFile copy(file);
    copyTo(copy, backup, progress);
    copy.giveToOwnerOf(file);
    FormerFiles former(file);
    former.moveAside();
    copy.takeName();
    return former.keep();
}

}  // namespace host
