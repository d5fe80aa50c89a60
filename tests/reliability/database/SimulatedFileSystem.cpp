#include <sqlite3.h>

#include <cstring>
#include <memory>

#include "tests/reliability/database/SimulatedDisk.h"
#include "tests/reliability/database/SimulatedFile.h"

// SQLite's file system on the simulated disk.
namespace reliability {
namespace {

/// The disk of the files that are opened from now on.
std::shared_ptr<SimulatedDisk>& currentDisk() {
    static std::shared_ptr<SimulatedDisk> disk;
    return disk;
}

int openFile(sqlite3_vfs* /*system*/, const char* name, sqlite3_file* file, int flags, int* openedFlags) {
    const int error = openSimulatedFile(currentDisk(), name, file, flags);
    if (openedFlags != nullptr) {
        *openedFlags = flags;
    }
    return error;
}

int removeFile(sqlite3_vfs* /*system*/, const char* name, int synced) {
    if (const int error = currentDisk()->next(SimulatedDisk::Operation::eDelete, name)) {
        return error;
    }
    if (!currentDisk()->exists(name)) {
        return SQLITE_IOERR_DELETE_NOENT;
    }
    currentDisk()->remove(name, synced != 0);
    return SQLITE_OK;
}

int accessFile(sqlite3_vfs* /*system*/, const char* name, int /*flags*/, int* result) {
    *result = currentDisk()->exists(name) ? 1 : 0;
    return SQLITE_OK;
}

int fullName(sqlite3_vfs* /*system*/, const char* name, int size, char* result) {
    sqlite3_snprintf(size, result, "%s", name);
    return SQLITE_OK;
}

/// SQLite sleeps before it tries a lock again; no other thread would release it here.
int sleepNot(sqlite3_vfs* /*system*/, int microseconds) {
    return microseconds;
}

}  // namespace

void SimulatedDisk::use(const std::shared_ptr<SimulatedDisk>& disk) {
    // Time, chance and errors are those of the real file system.
    static sqlite3_vfs system = [] {
        sqlite3_vfs copy = *sqlite3_vfs_find(nullptr);
        copy.zName = "simulated";
        copy.pNext = nullptr;
        copy.szOsFile = sizeOfSimulatedFile();
        copy.xOpen = &openFile;
        copy.xDelete = &removeFile;
        copy.xAccess = &accessFile;
        copy.xFullPathname = &fullName;
        copy.xSleep = &sleepNot;
        return copy;
    }();
    static const int registered = sqlite3_vfs_register(&system, 1);
    static_cast<void>(registered);
    currentDisk() = disk;
}

}  // namespace reliability
