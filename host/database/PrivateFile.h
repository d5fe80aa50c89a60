#pragma once

#include <filesystem>

namespace host {

/// Throws `DatabaseError` if the name is that of a link, a pipe, a device or a directory. It changes nothing.
void requireRegularFile(const std::filesystem::path& file);

/// Creates the file (mode 0600) if it is missing, and takes the permissions of others from one that exists;
/// SQLite would create it readable for all. Its companion files get the file's own mode. Throws
/// `DatabaseError` on failure, also for what is no regular file.
void makePrivateFile(const std::filesystem::path& file);

}  // namespace host
