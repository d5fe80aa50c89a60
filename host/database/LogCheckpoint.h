#pragma once

#include <filesystem>
#include <memory>

namespace SQLite {
class Database;
}

namespace host {

class DatabaseFile;

/// Moves what the write-ahead log of a database has into its file, over a connection of its own, while
/// another one writes. One thread at a time uses it.
class LogCheckpoint {
public:
    /// `place` must outlive this object.
    LogCheckpoint(std::filesystem::path file, const DatabaseFile& place);
    ~LogCheckpoint();
    LogCheckpoint(const LogCheckpoint&) = delete;
    LogCheckpoint& operator=(const LogCheckpoint&) = delete;

    /// Returns the number of pages of the log that are in the file afterwards. Does not wait for other
    /// connections. `generation` is the one of the open file: another one opens the
    /// file again. Throws `SQLite::Exception`, or `std::runtime_error` if other files have the names of the
    /// open ones: SQLite would take the pages of another log.
    [[nodiscard]] int run(unsigned generation);

private:
    void open(unsigned generation);

    const std::filesystem::path m_file;
    const DatabaseFile& m_place;
    std::unique_ptr<SQLite::Database> m_connection;
    unsigned m_generation = 0;
};

}  // namespace host
