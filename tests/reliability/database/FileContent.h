#pragma once

#include <sqlite3.h>

#include <memory>
#include <string>
#include <vector>

namespace reliability {

/// A file and its locks, which all handles of the file share. Guarded by the lock of all files
/// (`SimulatedFile.cpp`).
struct FileContent {
    std::string content{};
    // The locks of the file.
    int readers = 0;
    const void* reserved = nullptr;  // the handle that has the lock, as the next two
    const void* pending = nullptr;
    const void* exclusive = nullptr;
    // The memory that the connections of a write-ahead log share, and its locks.
    std::vector<std::unique_ptr<char[]>> regions{};
    int handles = 0;
    int shared[SQLITE_SHM_NLOCK] = {};
    const void* owner[SQLITE_SHM_NLOCK] = {};
};

}  // namespace reliability
