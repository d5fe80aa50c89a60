#include "host/config/FileReplacement.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <stdexcept>
#include <system_error>

#include "host/framework/FileDescriptor.h"

namespace host {
namespace {

bool isWritten(const FileDescriptor& file, const std::string& text) {
    const ssize_t written = ::write(file.get(), text.data(), text.size());
    if (written >= 0 && written < static_cast<ssize_t>(text.size())) {
        errno = ENOSPC;  // only a full disk cuts so short a text
        return false;
    }
    return written >= 0;
}

[[noreturn]] void fail(const std::filesystem::path& path, int reason) {
    throw std::runtime_error(path.string() + " cannot be made: " + std::generic_category().message(reason));
}

}  // namespace

void replaceFile(const std::filesystem::path& path, const std::string& text) {
    const std::filesystem::path fresh = path.string() + ".new";
    if (::unlink(fresh.c_str()) != 0 && errno != ENOENT) {
        fail(fresh, errno);  // such as "Is a directory"
    }
    const FileDescriptor file(
        ::open(fresh.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR));
    if (!file.isOpen() || !isWritten(file, text) || ::fsync(file.get()) != 0 ||
        ::rename(fresh.c_str(), path.c_str()) != 0) {
        const int reason = errno;
        ::unlink(fresh.c_str());
        fail(path, reason);
    }
}

}  // namespace host
