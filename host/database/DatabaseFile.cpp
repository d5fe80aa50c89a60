#include "host/database/DatabaseFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <string>
#include <utility>

#include "host/database/DatabaseConnection.h"
#include "host/database/PrivateFile.h"

namespace host {
namespace {

constexpr std::array<const char*, 3> kCompanions{"", "-wal", "-shm"};

/// Makes the new names in the directory durable.
void flushDirectory(const std::filesystem::path& directory) {
    const int descriptor = ::open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor >= 0) {
        static_cast<void>(::fsync(descriptor));
        ::close(descriptor);
    }
}

}  // namespace

DatabaseFile::DatabaseFile(std::filesystem::path file) : m_file(std::move(file)), m_open(find()) {}

DatabaseFile::Identity DatabaseFile::find() const noexcept {
    struct stat status {};
    return ::stat(m_file.c_str(), &status) == 0 ? Identity{status.st_dev, status.st_ino} : Identity{};
}

bool DatabaseFile::isInPlace() const noexcept {
    const Identity found = find();
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
        std::filesystem::rename(copyOf(file), file);
    }
}

std::filesystem::path DatabaseFile::copyOf(const std::filesystem::path& file) {
    return file.string() + ".copy";
}

/// A log beside a missing file belongs to the open one, whose copy has all of it.
void DatabaseFile::moveAside() const {
    const std::string file = m_file.string();
    if (!std::filesystem::exists(m_file)) {
        std::filesystem::remove(file + "-wal");
        std::filesystem::remove(file + "-shm");
        return;
    }
    std::string suffix = ".replaced";
    for (int count = 2; std::filesystem::exists(file + suffix); ++count) {
        suffix = ".replaced." + std::to_string(count);
    }
    for (const char* const companion : kCompanions) {
        if (std::filesystem::exists(file + companion)) {
            std::filesystem::rename(file + companion, file + companion + suffix);
        }
    }
}

}  // namespace host
