#pragma once

#include <filesystem>

namespace host {

/// Creates the file (mode 0600) if it is missing, and takes the permissions of others from one that exists;
/// SQLite would create it readable for all. Its companion files get the file's own mode. Throws
/// `DatabaseError` on failure.
void makePrivateFile(const std::filesystem::path& file);

}  // namespace host
