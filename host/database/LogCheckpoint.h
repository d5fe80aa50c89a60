#pragma once

#include <filesystem>
#include <memory>

namespace SQLite {
class Database;
}

namespace host {

/// Moves what the write-ahead log of a database has into its file, over a connection of its own, while
/// another one writes. One thread at a time uses it.
class LogCheckpoint {
public:
    explicit LogCheckpoint(std::filesystem::path file);
    ~LogCheckpoint();
    LogCheckpoint(const LogCheckpoint&) = delete;
    LogCheckpoint& operator=(const LogCheckpoint&) = delete;

    /// Afterwards the log is used from its begin again, unless it has grown meanwhile. Does not wait for
    /// other connections. `generation` is the one of the open file: another one opens the file again.
    /// Returns the number of pages that the log has. Throws `SQLite::Exception`.
    [[nodiscard]] int run(unsigned generation);

private:
    const std::filesystem::path m_file;
    std::unique_ptr<SQLite::Database> m_connection;
    unsigned m_generation = 0;
};

}  // namespace host
