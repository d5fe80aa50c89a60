#include "host/database/PrivateFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "host/database/DatabaseError.h"

namespace host {

void makePrivateFile(const std::filesystem::path& file) {
    const int descriptor = ::open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (descriptor < 0) {
        throw DatabaseError(file.string() + " cannot be opened: " + std::generic_category().message(errno));
    }
    // A file that was loosened or copied; that of another user stays as it is.
    if (struct stat status{};
        ::fstat(descriptor, &status) == 0 && (status.st_mode & (S_IRWXG | S_IRWXO)) != 0) {
        static_cast<void>(::fchmod(descriptor, status.st_mode & S_IRWXU));
    }
    ::close(descriptor);
}

}  // namespace host
