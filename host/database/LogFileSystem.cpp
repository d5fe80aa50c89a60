#include "host/database/LogFileSystem.h"

#include <sqlite3.h>

#include <algorithm>
#include <cstddef>
#include <list>
#include <mutex>
#include <new>
#include <string>
#include <vector>

namespace host {
namespace {

/// A transaction with more bytes is written in parts.
constexpr std::size_t kMostBytes = 96U << 10U;
constexpr int kFrameHeaderBytes = 24;

/// SQLite's file system and the one that it wraps.
struct LogFileSystem {
    /// The first member: SQLite has its address.
    sqlite3_vfs system{};
    sqlite3_vfs* wrapped = nullptr;
    std::string name;
};

/// An open log. SQLite allocates it, with the memory of the wrapped file after it.
class LogFile {
public:
    static LogFile& of(sqlite3_file* file) { return *reinterpret_cast<LogFile*>(file); }

    explicit LogFile(sqlite3_file* wrapped) : m_wrapped(wrapped) {}

    /// Gathers what continues the last write, until the page of the frame that commits.
    int write(const char* bytes, int count, sqlite3_int64 offset) noexcept {
        const bool follows = offset == m_next;
        m_next = offset + count;
        if (!follows || !append(bytes, count, offset)) {
            const int error = flush();
            noteFrame(bytes, count);
            return error != SQLITE_OK ? error : m_wrapped->pMethods->xWrite(m_wrapped, bytes, count, offset);
        }
        const bool commits = m_commits && count != kFrameHeaderBytes;
        noteFrame(bytes, count);
        return commits || m_bytes.size() >= kMostBytes ? flush() : SQLITE_OK;
    }

    int flush() noexcept {
        if (m_bytes.empty()) {
            return SQLITE_OK;
        }
        const int error =
            m_wrapped->pMethods->xWrite(m_wrapped, m_bytes.data(), static_cast<int>(m_bytes.size()), m_begin);
        m_bytes.clear();
        return error;
    }

    /// The wrapped file with all that was written, for another operation than a write.
    template <typename Operation>
    int flushed(Operation operation) noexcept {
        const int error = flush();
        return error != SQLITE_OK ? error : operation(m_wrapped);
    }

    [[nodiscard]] sqlite3_file* wrapped() const noexcept { return m_wrapped; }

private:
    [[nodiscard]] bool append(const char* bytes, int count, sqlite3_int64 offset) noexcept {
        try {
            m_begin = m_bytes.empty() ? offset : m_begin;
            m_bytes.insert(m_bytes.end(), bytes, bytes + count);
            return true;
        } catch (const std::bad_alloc&) {
            return false;
        }
    }

    /// The header of a frame tells in its second number whether its page ends a transaction.
    void noteFrame(const char* bytes, int count) noexcept {
        m_commits = count == kFrameHeaderBytes &&
                    std::any_of(bytes + 4, bytes + 8, [](char each) { return each != '\0'; });
    }

    /// The first member: SQLite's view of the file.
    sqlite3_file m_base{nullptr};
    sqlite3_file* const m_wrapped;
    /// The bytes that are not written yet, from m_begin on.
    std::vector<char> m_bytes;
    sqlite3_int64 m_begin = 0;
    /// Where the last write ended.
    sqlite3_int64 m_next = -1;
    bool m_commits = false;

    friend int openFile(sqlite3_vfs*, const char*, sqlite3_file*, int, int*);
};

constexpr std::size_t kWrappedAt =
    (sizeof(LogFile) + alignof(std::max_align_t) - 1) / alignof(std::max_align_t) * alignof(std::max_align_t);

// The operations of a log that SQLite uses: https://www.sqlite.org/c3ref/io_methods.html
const sqlite3_io_methods kLogMethods = [] {
    sqlite3_io_methods methods{};
    methods.iVersion = 1;
    methods.xClose = [](sqlite3_file* file) {
        LogFile& log = LogFile::of(file);
        static_cast<void>(log.flush());
        sqlite3_file* const wrapped = log.wrapped();
        const int error = wrapped->pMethods->xClose(wrapped);
        log.~LogFile();
        return error;
    };
    methods.xRead = [](sqlite3_file* file, void* target, int count, sqlite3_int64 offset) {
        return LogFile::of(file).flushed(
            [&](sqlite3_file* log) { return log->pMethods->xRead(log, target, count, offset); });
    };
    methods.xWrite = [](sqlite3_file* file, const void* bytes, int count, sqlite3_int64 offset) {
        return LogFile::of(file).write(static_cast<const char*>(bytes), count, offset);
    };
    methods.xTruncate = [](sqlite3_file* file, sqlite3_int64 size) {
        return LogFile::of(file).flushed(
            [&](sqlite3_file* log) { return log->pMethods->xTruncate(log, size); });
    };
    methods.xSync = [](sqlite3_file* file, int flags) {
        return LogFile::of(file).flushed([&](sqlite3_file* log) { return log->pMethods->xSync(log, flags); });
    };
    methods.xFileSize = [](sqlite3_file* file, sqlite3_int64* size) {
        return LogFile::of(file).flushed(
            [&](sqlite3_file* log) { return log->pMethods->xFileSize(log, size); });
    };
    methods.xLock = [](sqlite3_file* file, int level) {
        sqlite3_file* const log = LogFile::of(file).wrapped();
        return log->pMethods->xLock(log, level);
    };
    methods.xUnlock = [](sqlite3_file* file, int level) {
        sqlite3_file* const log = LogFile::of(file).wrapped();
        return log->pMethods->xUnlock(log, level);
    };
    methods.xCheckReservedLock = [](sqlite3_file* file, int* result) {
        sqlite3_file* const log = LogFile::of(file).wrapped();
        return log->pMethods->xCheckReservedLock(log, result);
    };
    methods.xFileControl = [](sqlite3_file* file, int operation, void* argument) {
        sqlite3_file* const log = LogFile::of(file).wrapped();
        return log->pMethods->xFileControl(log, operation, argument);
    };
    methods.xSectorSize = [](sqlite3_file* file) {
        sqlite3_file* const log = LogFile::of(file).wrapped();
        return log->pMethods->xSectorSize(log);
    };
    methods.xDeviceCharacteristics = [](sqlite3_file* file) {
        sqlite3_file* const log = LogFile::of(file).wrapped();
        return log->pMethods->xDeviceCharacteristics(log);
    };
    return methods;
}();

/// Another file than a log is one of the wrapped file system.
int openFile(sqlite3_vfs* system, const char* name, sqlite3_file* file, int flags, int* openedFlags) {
    sqlite3_vfs* const real = reinterpret_cast<LogFileSystem*>(system)->wrapped;
    if ((flags & SQLITE_OPEN_WAL) == 0) {
        return real->xOpen(real, name, file, flags, openedFlags);
    }
    auto* const wrapped = reinterpret_cast<sqlite3_file*>(reinterpret_cast<std::byte*>(file) + kWrappedAt);
    wrapped->pMethods = nullptr;
    const int error = real->xOpen(real, name, wrapped, flags, openedFlags);
    if (wrapped->pMethods == nullptr) {
        file->pMethods = nullptr;
        return error;
    }
    LogFile* const log = ::new (file) LogFile(wrapped);
    log->m_base.pMethods = &kLogMethods;
    return error;
}

}  // namespace

const char* logFileSystem() {
    static std::mutex mutex;
    static std::list<LogFileSystem> systems;
    const std::lock_guard lock(mutex);
    sqlite3_vfs* const wrapped = sqlite3_vfs_find(nullptr);
    for (const LogFileSystem& each : systems) {
        if (each.wrapped == wrapped) {
            return each.name.c_str();
        }
    }
    LogFileSystem& added = systems.emplace_back();
    added.wrapped = wrapped;
    added.name = std::string("calljournal-") + wrapped->zName;
    added.system = *wrapped;
    added.system.zName = added.name.c_str();
    added.system.pNext = nullptr;
    added.system.szOsFile += static_cast<int>(kWrappedAt);
    added.system.xOpen = &openFile;
    static_cast<void>(sqlite3_vfs_register(&added.system, 0));
    return added.name.c_str();
}

}  // namespace host
