#pragma once

#include <filesystem>

namespace host {

/// Moves what the write-ahead log of a database has into its file, over a connection of its own, while
/// another one writes; then the log is used from its begin again, unless it has grown meanwhile. Does not
/// wait for other connections. Any thread may call.
///
/// Returns the number of pages that the log has. Throws `SQLite::Exception`.
[[nodiscard]] int checkpointLog(const std::filesystem::path& file);

}  // namespace host
