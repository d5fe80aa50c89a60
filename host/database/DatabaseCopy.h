#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <vector>

#include "host/database/DatabaseError.h"

/// Backups of the database file. Call each function from any thread; it blocks until it is done. Each throws
/// `DatabaseError` with a sentence for the user, and then leaves the files as they were.
namespace host {

/// Called repeatedly with the number of pages that are copied and that the file has. Returns false to end
/// the copy, which then throws.
using CopyProgress = std::function<bool(std::size_t done, std::size_t total)>;

/// Copies a database of this program to the file `target` (mode 0600), in the state of one moment, while
/// other processes read and write it. The copy is one file without a log, checked, and gets its name when it
/// is complete and on the disk; an existing file of that name is replaced. Until then it is called
/// TARGET.unfinished-XXXXXX, which stays only if the process is killed.
void copyDatabase(const std::filesystem::path& source, const std::filesystem::path& target,
                  const CopyProgress& progress);

/// Examines a database of this program, in the state of one moment, while other processes read and write it:
/// throws if it is damaged, or of a newer version of the program. Takes seconds for a million calls.
void examineDatabase(const std::filesystem::path& file);

/// Replaces the database `file` by a copy of `backup`, which may be of an older version of the program and
/// must not be damaged or of a newer one. The former file and its log get ".before-restore" appended to their
/// names, or ".before-restore.2" and so on. The new one has the owner of the former file, or of the directory
/// if there was none. Returns the files that were kept. Requires: no process uses
/// `file`.
std::vector<std::filesystem::path> restoreDatabase(const std::filesystem::path& backup,
                                                   const std::filesystem::path& file,
                                                   const CopyProgress& progress);

}  // namespace host
