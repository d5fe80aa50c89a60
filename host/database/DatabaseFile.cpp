#include "host/database/DatabaseFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <string>
#include <utility>

#include "host/database/DatabaseConnection.h"
#include "host/database/PrivateFile.h"

namespace host {
namespace {

/// The file is first: when it is missing and its copy is complete, `recover` takes the copy.
constexpr std::array<const char*, 3> kSuffixes{"", "-wal", "-shm"};

/// Makes the new names in the directory durable.
void flushDirectory(const std::filesystem::path& directory) {
    const int descriptor = ::open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor >= 0) {
        static_cast<void>(::fsync(descriptor));
        ::close(descriptor);
    }
}

}  // namespace

DatabaseFile::DatabaseFile(std::filesystem::path file)
    : m_file(std::move(file)),
      m_names{m_file.string() + kSuffixes[0], m_file.string() + kSuffixes[1], m_file.string() + kSuffixes[2]},
      m_open(find()) {}

DatabaseFile::Identities DatabaseFile::find() const noexcept {
    Identities found;
    for (std::size_t i = 0; i < found.size(); ++i) {
        // Without the times: once a file's times were read, the kernel gives it a new one at the next write,
        // and then each flush of the log writes its inode, too.
        struct statx status {};
        if (::statx(AT_FDCWD, m_names.at(i).c_str(), 0, STATX_INO, &status) == 0) {
            found.at(i) = {makedev(status.stx_dev_major, status.stx_dev_minor), status.stx_ino};
        }
    }
    return found;
}

void DatabaseFile::requireInPlace() const {
    if (!isInPlace()) {
        throw std::runtime_error(m_file.string() + " is not the file that is in use");
    }
}

bool DatabaseFile::isInPlace() const noexcept {
    const Identities found = find();
    const std::lock_guard lock(m_mutex);
    return found == m_open;
}

std::unique_ptr<DatabaseConnection> DatabaseFile::putBack(DatabaseConnection& connection,
                                                          std::chrono::milliseconds busyTime) {
    const std::filesystem::path unfinished = m_file.string() + ".unfinished";
    std::filesystem::remove(unfinished);
    makePrivateFile(unfinished);
    connection.copyTo(unfinished);
    std::filesystem::rename(unfinished, copyOf(m_file));
    moveAside();
    std::filesystem::rename(copyOf(m_file), m_file);
    flushDirectory(m_file.parent_path());
    auto opened = std::make_unique<DatabaseConnection>(m_file, busyTime);
    const std::lock_guard lock(m_mutex);
    m_open = find();
    return opened;
}

void DatabaseFile::recover(const std::filesystem::path& file) {
    if (!std::filesystem::exists(file) && std::filesystem::exists(copyOf(file))) {
        // A log that the other process has left is not that of the copy.
        std::filesystem::remove(file.string() + "-wal");
        std::filesystem::remove(file.string() + "-shm");
        std::filesystem::rename(copyOf(file), file);
    }
}

std::filesystem::path DatabaseFile::copyOf(const std::filesystem::path& file) {
    return file.string() + ".copy";
}

/// The copy has all that the open files have.
void DatabaseFile::moveAside() const {
    const Identities found = find();
    std::string suffix = ".replaced";
    const auto isTaken = [&](const std::string& name) { return std::filesystem::exists(name + suffix); };
    for (int count = 2; std::any_of(m_names.begin(), m_names.end(), isTaken); ++count) {
        suffix = ".replaced." + std::to_string(count);
    }
    for (std::size_t i = 0; i < found.size(); ++i) {
        const std::string& name = m_names.at(i);
        if (found.at(i) == m_open.at(i)) {
            std::filesystem::remove(name);
        } else if (found.at(i) != Identity{}) {
            std::filesystem::rename(name, name + suffix);
        }
    }
}

}  // namespace host
