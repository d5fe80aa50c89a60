#pragma once

#include <sys/types.h>

#include <chrono>
#include <filesystem>
#include <memory>
#include <mutex>

namespace host {

class DatabaseConnection;

/// The file that a connection has open, as it is found under its name. A running process keeps a file that is
/// deleted or renamed, so that all it writes there is gone when it ends.
///
/// Any thread may call `isInPlace`; the rest requires the database's lock.
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

    /// Completes a `putBack` that was killed before its copy had the name of the file. Call it before the
    /// file is opened. Throws `std::filesystem::filesystem_error`.
    static void recover(const std::filesystem::path& file);

private:
    struct Identity {
        dev_t device{};
        ino_t number{};
        bool operator==(const Identity&) const = default;
    };

    /// Default for a file that does not exist.
    [[nodiscard]] Identity find() const noexcept;
    void moveAside() const;
    [[nodiscard]] static std::filesystem::path copyOf(const std::filesystem::path& file);

    const std::filesystem::path m_file;

    mutable std::mutex m_mutex;
    // Guarded by m_mutex.
    Identity m_open;
};

}  // namespace host
