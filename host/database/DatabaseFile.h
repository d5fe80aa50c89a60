#pragma once

#include <sys/types.h>

#include <chrono>
#include <filesystem>
#include <memory>

namespace host {

class DatabaseConnection;

/// The file that a connection has open, as it is found under its name. A running process keeps a file that is
/// deleted or renamed, so that all it writes there is gone when it ends.
///
/// Not thread-safe: requires the database's lock.
class DatabaseFile {
public:
    /// The file exists and is open.
    explicit DatabaseFile(std::filesystem::path file);

    /// True if the open file still has its name.
    [[nodiscard]] bool isInPlace() const noexcept;
    /// Writes all that `connection` has open to a new file of that name, and returns a connection to it.
    /// Another file of that name is moved aside, with its log, as FILE.replaced, or FILE.replaced.2 and so
    /// on. Throws if that fails; the open file is not changed.
    [[nodiscard]] std::unique_ptr<DatabaseConnection> putBack(DatabaseConnection& connection,
                                                              std::chrono::milliseconds busyTime);

private:
    struct Identity {
        dev_t device{};
        ino_t number{};
        bool operator==(const Identity&) const = default;
    };

    /// Default for a file that does not exist.
    [[nodiscard]] Identity find() const noexcept;
    void moveAside() const;

    const std::filesystem::path m_file;
    Identity m_open;
};

}  // namespace host
