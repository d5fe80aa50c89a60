#include "host/log/LogOutput.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <stdexcept>
#include <system_error>

namespace host {
namespace {

int openedFile(const std::string& file) {
    // Opening a pipe that no process reads would block; writing blocks again.
    const int descriptor =
        ::open(file.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC | O_NONBLOCK, S_IRUSR | S_IWUSR);
    if (descriptor < 0) {
        throw std::runtime_error(
            "cannot write the log file " + file + ": " +
            (errno == ENXIO ? "it is a pipe without a reader" : std::generic_category().message(errno)));
    }
    ::fcntl(descriptor, F_SETFL, O_APPEND);
    return descriptor;
}

}  // namespace

LogOutput::LogOutput(const std::string& file)
    : m_descriptor(file.empty() ? STDERR_FILENO : openedFile(file)) {}

LogOutput::~LogOutput() {
    if (m_descriptor != STDERR_FILENO) {
        ::close(m_descriptor);
    }
}

// Without the buffer and the lock of `stderr`: the exit of the program would wait for them.
std::size_t LogOutput::write(std::string_view text) noexcept {
    std::size_t done = 0;
    while (done < text.size()) {
        const ssize_t written = ::write(m_descriptor, text.data() + done, text.size() - done);
        if (written > 0) {
            done += static_cast<std::size_t>(written);
        } else if (errno == EAGAIN) {
            pollfd wait{m_descriptor, POLLOUT, 0};
            ::poll(&wait, 1, -1);
        } else if (errno != EINTR) {
            break;
        }
    }
    return done;
}

}  // namespace host
