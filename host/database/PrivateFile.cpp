#include "host/database/PrivateFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "host/database/DatabaseError.h"

namespace host {

void requireRegularFile(const std::filesystem::path& file) {
    struct stat status {};
    if (::lstat(file.c_str(), &status) == 0 && !S_ISREG(status.st_mode)) {
        throw DatabaseError(file.string() + " is not a regular file");
    }
}

void makePrivateFile(const std::filesystem::path& file) {
    requireRegularFile(file);
    // The file may have been exchanged since: no link is followed, and a pipe does not block.
    const int descriptor =
        ::open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, S_IRUSR | S_IWUSR);
    if (descriptor < 0) {
        throw DatabaseError(file.string() + " cannot be opened: " + std::generic_category().message(errno));
    }
    // A file that was loosened or copied; that of another user stays as it is.
    struct stat status {};
    const bool isRegular = ::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
    if (isRegular && (status.st_mode & (S_IRWXG | S_IRWXO)) != 0) {
        static_cast<void>(::fchmod(descriptor, status.st_mode & S_IRWXU));
    }
    ::close(descriptor);
    if (!isRegular) {
        throw DatabaseError(file.string() + " is not a regular file");
    }
}

}  // namespace host
