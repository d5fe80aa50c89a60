#pragma once

#include <sys/types.h>

#include <array>
#include <chrono>
#include <filesystem>
#include <memory>
#include <mutex>
#include <string>

namespace host {

class DatabaseConnection;

/// The file that a connection has open, its log (-wal) and the index of that (-shm), as they are found under
/// their names. A running process keeps a file that is deleted or renamed, so that all it writes there is
/// gone when it ends.
///
/// Any thread may call `isInPlace` and `requireInPlace`; the rest requires the database's lock.
class DatabaseFile {
public:
    /// The file exists and is open, and so are its companions.
    explicit DatabaseFile(std::filesystem::path file);

    /// True if the open files still have their names.
    [[nodiscard]] bool isInPlace() const noexcept;
    /// Throws `std::runtime_error` if they do not. Call it before and after a connection is
    /// opened by name.
    void requireInPlace() const;
    /// Writes all that `connection` has open to a new file of that name, and returns a connection to it.
    /// The open files lose their names; any other file of these names is moved aside, as FILE.replaced,
    /// FILE-wal.replaced and FILE-shm.replaced, or FILE.replaced.2 and so on. Throws if that fails; what is
    /// open is not changed.
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

    /// The file, its log and the index of that; default for one that does not exist.
    using Identities = std::array<Identity, 3>;

    [[nodiscard]] Identities find() const noexcept;
    void moveAside() const;
    [[nodiscard]] static std::filesystem::path copyOf(const std::filesystem::path& file);

    const std::filesystem::path m_file;
    const std::array<std::string, 3> m_names;

    mutable std::mutex m_mutex;
    // Guarded by m_mutex.
    Identities m_open;
};

}  // namespace host
