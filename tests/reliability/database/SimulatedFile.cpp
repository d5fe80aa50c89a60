#include "tests/reliability/database/SimulatedFile.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <filesystem>
#include <mutex>
#include <new>
#include <utility>

#include "tests/reliability/database/FileContent.h"

namespace reliability {
namespace {

using Operation = SimulatedDisk::Operation;
using Change = SimulatedDisk::Change;

std::mutex filesMutex;

/// One opened file. SQLite allocates it, and knows its first member only.
struct Handle {
    sqlite3_file base;
    std::shared_ptr<SimulatedDisk> disk;
    std::shared_ptr<FileContent> file;
    std::string name;
    bool isDeletedAtEnd;
    int level;
    bool hasRegions;
    unsigned sharedLocks;
    unsigned exclusiveLocks;

    [[nodiscard]] int next(Operation operation) const { return disk->next(operation, name); }
};

Handle& of(sqlite3_file* file) {
    return *reinterpret_cast<Handle*>(file);
}

int unlock(sqlite3_file* file, int level) {
    Handle& handle = of(file);
    const std::lock_guard lock(filesMutex);
    FileContent& shared = *handle.file;
    for (const void** owner : {&shared.reserved, &shared.pending, &shared.exclusive}) {
        *owner = *owner == &handle ? nullptr : *owner;
    }
    if (level == SQLITE_LOCK_NONE && handle.level >= SQLITE_LOCK_SHARED) {
        --shared.readers;
    }
    handle.level = std::min(handle.level, level);
    return SQLITE_OK;
}

int unmapShared(sqlite3_file* file, int /*isDeleted*/) {
    Handle& handle = of(file);
    const std::lock_guard lock(filesMutex);
    if (std::exchange(handle.hasRegions, false) && --handle.file->handles == 0) {
        handle.file->regions.clear();
    }
    return SQLITE_OK;
}

int close(sqlite3_file* file) {
    Handle& handle = of(file);
    unlock(file, SQLITE_LOCK_NONE);
    unmapShared(file, 0);
    if (handle.isDeletedAtEnd) {
        handle.disk->remove(handle.name, false);
    }
    handle.~Handle();
    return SQLITE_OK;
}

int read(sqlite3_file* file, void* bytes, int size, sqlite3_int64 offset) {
    Handle& handle = of(file);
    if (const int error = handle.next(Operation::eRead)) {
        return error;
    }
    const std::lock_guard lock(filesMutex);
    const std::string& content = handle.file->content;
    const std::size_t from = std::min(static_cast<std::size_t>(offset), content.size());
    const std::size_t there = std::min(static_cast<std::size_t>(size), content.size() - from);
    std::memcpy(bytes, content.data() + from, there);
    std::memset(static_cast<char*>(bytes) + there, 0, static_cast<std::size_t>(size) - there);
    return there == static_cast<std::size_t>(size) ? SQLITE_OK : SQLITE_IOERR_SHORT_READ;
}

int write(sqlite3_file* file, const void* bytes, int size, sqlite3_int64 offset) {
    Handle& handle = of(file);
    const int error = handle.next(Operation::eWrite);
    // A full disk takes a part of what is written.
    const auto taken = static_cast<std::size_t>(error == SQLITE_FULL ? size / 2 : error == 0 ? size : 0);
    std::string text(static_cast<const char*>(bytes), taken);
    const auto from = static_cast<std::size_t>(offset);
    if (taken > 0) {
        const std::lock_guard lock(filesMutex);
        std::string& content = handle.file->content;
        content.resize(std::max(content.size(), from + taken));
        content.replace(from, taken, text);
    }
    handle.disk->record({Change::Kind::eWrite, handle.name, from, std::move(text)});
    return error;
}

int truncate(sqlite3_file* file, sqlite3_int64 size) {
    Handle& handle = of(file);
    if (const int error = handle.next(Operation::eTruncate)) {
        return error;
    }
    const std::lock_guard lock(filesMutex);
    handle.file->content.resize(static_cast<std::size_t>(size));
    handle.disk->record({Change::Kind::eTruncate, handle.name, static_cast<std::size_t>(size)});
    return SQLITE_OK;
}

int sync(sqlite3_file* file, int /*flags*/) {
    Handle& handle = of(file);
    const int error = handle.next(Operation::eSync);
    if (error == 0) {
        handle.disk->record({Change::Kind::eSync, handle.name});
    }
    return error;
}

int size(sqlite3_file* file, sqlite3_int64* result) {
    const std::lock_guard lock(filesMutex);
    *result = static_cast<sqlite3_int64>(of(file).file->content.size());
    return SQLITE_OK;
}

bool isOthers(const void* owner, const Handle& handle) {
    return owner != nullptr && owner != &handle;
}

int lockFile(sqlite3_file* file, int level) {
    Handle& handle = of(file);
    if (const int error = handle.next(Operation::eLock)) {
        return error;
    }
    const std::lock_guard lock(filesMutex);
    FileContent& shared = *handle.file;
    if (level <= handle.level) {
        return SQLITE_OK;
    }
    if (handle.level == SQLITE_LOCK_NONE) {
        if (isOthers(shared.pending, handle) || isOthers(shared.exclusive, handle)) {
            return SQLITE_BUSY;
        }
        ++shared.readers;
        handle.level = SQLITE_LOCK_SHARED;
    }
    if (level >= SQLITE_LOCK_RESERVED) {
        if (isOthers(shared.reserved, handle)) {
            return SQLITE_BUSY;
        }
        shared.reserved = &handle;
        handle.level = std::max(handle.level, SQLITE_LOCK_RESERVED);
    }
    if (level == SQLITE_LOCK_EXCLUSIVE) {
        shared.pending = &handle;
        handle.level = SQLITE_LOCK_PENDING;
        if (shared.readers > 1) {
            return SQLITE_BUSY;
        }
        shared.exclusive = &handle;
        handle.level = SQLITE_LOCK_EXCLUSIVE;
    }
    return SQLITE_OK;
}

int checkReserved(sqlite3_file* file, int* result) {
    const std::lock_guard lock(filesMutex);
    *result = of(file).file->reserved != nullptr ? 1 : 0;
    return SQLITE_OK;
}

int mapShared(sqlite3_file* file, int region, int bytes, int extends, void volatile** result) {
    Handle& handle = of(file);
    *result = nullptr;
    if (const int error = handle.next(Operation::eShared)) {
        return error;
    }
    const std::lock_guard lock(filesMutex);
    FileContent& shared = *handle.file;
    if (!std::exchange(handle.hasRegions, true)) {
        ++shared.handles;
    }
    const auto wanted = static_cast<std::size_t>(region) + 1;
    while (extends != 0 && shared.regions.size() < wanted) {
        shared.regions.push_back(std::make_unique<char[]>(static_cast<std::size_t>(bytes)));
    }
    *result = shared.regions.size() < wanted ? nullptr : shared.regions[wanted - 1].get();
    return SQLITE_OK;
}

int lockShared(sqlite3_file* file, int offset, int count, int flags) {
    Handle& handle = of(file);
    const bool unlocks = (flags & SQLITE_SHM_UNLOCK) != 0;
    if (const int error = unlocks ? 0 : handle.next(Operation::eLock)) {
        return error;
    }
    const std::lock_guard lock(filesMutex);
    FileContent& shared = *handle.file;
    const bool isExclusive = (flags & SQLITE_SHM_EXCLUSIVE) != 0;
    for (int at = offset; !unlocks && at < offset + count; ++at) {
        const int mine = (handle.sharedLocks >> at) & 1U;
        if (isOthers(shared.owner[at], handle) || (isExclusive && shared.shared[at] > mine)) {
            return SQLITE_BUSY;
        }
    }
    for (int at = offset; at < offset + count; ++at) {
        unsigned& mine = isExclusive ? handle.exclusiveLocks : handle.sharedLocks;
        const bool had = ((mine >> at) & 1U) != 0;
        mine = unlocks ? mine & ~(1U << at) : mine | (1U << at);
        if (isExclusive) {
            shared.owner[at] = unlocks ? nullptr : &handle;
        } else if (had == unlocks) {
            shared.shared[at] += unlocks ? -1 : 1;
        }
    }
    return SQLITE_OK;
}

void barrier(sqlite3_file* /*file*/) {
    std::atomic_thread_fence(std::memory_order_seq_cst);
}

int control(sqlite3_file* /*file*/, int /*operation*/, void* /*value*/) {
    return SQLITE_NOTFOUND;
}

int sectorSize(sqlite3_file* /*file*/) {
    return 4096;  // as the file system of Unix says, with the next value
}

int characteristics(sqlite3_file* /*file*/) {
    return SQLITE_IOCAP_POWERSAFE_OVERWRITE;
}

const sqlite3_io_methods kMethods = {2,
                                     &close,
                                     &read,
                                     &write,
                                     &truncate,
                                     &sync,
                                     &size,
                                     &lockFile,
                                     &unlock,
                                     &checkReserved,
                                     &control,
                                     &sectorSize,
                                     &characteristics,
                                     &mapShared,
                                     &lockShared,
                                     &barrier,
                                     &unmapShared,
                                     nullptr,
                                     nullptr};

}  // namespace

int openSimulatedFile(std::shared_ptr<SimulatedDisk> disk, const char* name, sqlite3_file* file, int flags) {
    static std::atomic<unsigned> temporaryFiles{0};
    const std::string given = name != nullptr ? name : "temporary-" + std::to_string(++temporaryFiles);
    file->pMethods = nullptr;
    if (const int error = disk->next(Operation::eOpen, given)) {
        return error;
    }
    // The program makes some files itself, before SQLite opens them.
    const bool creates = (flags & SQLITE_OPEN_CREATE) != 0 || std::filesystem::exists(given);
    std::shared_ptr<FileContent> opened = disk->open(given, creates);
    if (opened == nullptr) {
        return SQLITE_CANTOPEN;
    }
    const bool isDeletedAtEnd = (flags & SQLITE_OPEN_DELETEONCLOSE) != 0;
    new (file) Handle{{&kMethods},
                      std::move(disk),
                      std::move(opened),
                      given,
                      isDeletedAtEnd,
                      SQLITE_LOCK_NONE,
                      false,
                      0,
                      0};
    return SQLITE_OK;
}

int sizeOfSimulatedFile() noexcept {
    return sizeof(Handle);
}

}  // namespace reliability
