#pragma once

#include <atomic>
#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

namespace host {

class DatabaseConnection;
class DatabaseFile;

/// The connections that only read, beside the one that writes. Each piece of work has one for itself; idle
/// ones are kept.
///
/// Thread-safe; no lock is held while work runs.
class ReadConnections {
public:
    /// `place` must outlive this object.
    ReadConnections(std::filesystem::path file, const DatabaseFile& place,
                    std::chrono::milliseconds busyTime);
    ~ReadConnections();
    ReadConnections(const ReadConnections&) = delete;
    ReadConnections& operator=(const ReadConnections&) = delete;

    /// Runs work on a connection that no other work uses. Throws what the work or SQLite throws, or
    /// `std::runtime_error` if another file has the name of the open one.
    void run(const std::function<void(DatabaseConnection&)>& work);
    /// Closes all connections, those in use after their work, because the file was put back.
    void renew();
    /// The number of calls of `renew`.
    [[nodiscard]] unsigned generation() const noexcept { return m_generation; }

private:
    [[nodiscard]] std::unique_ptr<DatabaseConnection> take();

    // Constant after construction.
    const std::filesystem::path m_file;
    const DatabaseFile& m_place;
    const std::chrono::milliseconds m_busyTime;

    std::atomic<unsigned> m_generation{0};
    std::mutex m_mutex;
    // Guarded by m_mutex.
    std::vector<std::unique_ptr<DatabaseConnection>> m_idle;
};

}  // namespace host
