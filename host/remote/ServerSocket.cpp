#include "host/remote/ServerSocket.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>

#include <cerrno>
#include <string>
#include <system_error>

#include "host/remote/RemoteError.h"
#include "host/remote/SocketAddress.h"

namespace host {
namespace {

RemoteError failed(const std::string& what, const std::filesystem::path& path, int error) {
    return RemoteError(what + " " + path.string() + ": " + std::generic_category().message(error));
}

RemoteError taken(const std::filesystem::path& socket) {
    return RemoteError("a calljournal is already running at " + socket.string() +
                       ": end it first, or choose another directory with --data");
}

}  // namespace

ServerSocket::ServerSocket(const std::filesystem::path& dataDirectory) : m_path(dataDirectory / kSocketName) {
    lockDirectory(dataDirectory);
    removeStaleSocket();
    listen(dataDirectory);
}

ServerSocket::~ServerSocket() {
    std::error_code ignored;
    std::filesystem::remove(m_path, ignored);
}

void ServerSocket::lockDirectory(const std::filesystem::path& directory) {
    m_directory = FileDescriptor(::open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!m_directory.isOpen()) {
        throw failed("cannot use the data directory", directory, errno);
    }
    if (::flock(m_directory.get(), LOCK_EX | LOCK_NB) != 0) {
        throw errno == EWOULDBLOCK ? taken(m_path)
                                   : failed("cannot lock the data directory", directory, errno);
    }
}

void ServerSocket::removeStaleSocket() const {
    struct stat status {};
    if (::lstat(m_path.c_str(), &status) != 0) {
        return;
    }
    if (!S_ISSOCK(status.st_mode)) {
        throw RemoteError(m_path.string() + " exists and is not a socket: remove it");
    }
    if (::unlink(m_path.c_str()) != 0) {
        throw failed("cannot replace the socket of an earlier run,", m_path, errno);
    }
}

void ServerSocket::listen(const std::filesystem::path& directory) {
    const sockaddr_un address = socketAddressIn(directory);
    m_listener = FileDescriptor(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    // Set before `bind`: the file is created with this mode, so no other user can ever open it.
    if (!m_listener.isOpen() || ::fchmod(m_listener.get(), S_IRUSR | S_IWUSR) != 0 ||
        ::bind(m_listener.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
        ::listen(m_listener.get(), SOMAXCONN) != 0) {
        throw failed("cannot open the socket", m_path, errno);
    }
}

}  // namespace host
