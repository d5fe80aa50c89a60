#pragma once

#include <sqlite3.h>

#include <memory>

#include "tests/reliability/database/SimulatedDisk.h"

namespace reliability {

/// Opens a file of the disk as SQLite's file system does. Returns SQLite's error.
int openSimulatedFile(std::shared_ptr<SimulatedDisk> disk, const char* name, sqlite3_file* file, int flags);
/// The bytes that `openSimulatedFile` needs.
[[nodiscard]] int sizeOfSimulatedFile() noexcept;

}  // namespace reliability
