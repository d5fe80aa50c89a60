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

void replaceFile(const std::filesystem::path& path, const std::string& text) {
    const std::filesystem::path fresh = path.string() + ".new";
    ::unlink(fresh.c_str());
    const FileDescriptor file(
        ::open(fresh.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR));
    if (!file.isOpen() ||
        ::write(file.get(), text.data(), text.size()) != static_cast<ssize_t>(text.size()) ||
        ::fsync(file.get()) != 0 || ::rename(fresh.c_str(), path.c_str()) != 0) {
        throw std::runtime_error(path.string() +
                                 " cannot be made: " + std::generic_category().message(errno));
    }
}

}  // namespace host
