#include "host/text-files/WholeFile.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <stdexcept>
#include <system_error>

namespace host {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::seconds kTimeOfPipe{5};

[[noreturn]] void fail(int reason) {
    throw std::runtime_error(std::generic_category().message(reason));
}

/// An open file; no operation waits for the writer of a pipe.
class OpenFile {
public:
    explicit OpenFile(const std::filesystem::path& file)
        : m_descriptor(::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)) {
        if (m_descriptor < 0) {
            fail(errno);
        }
    }
    ~OpenFile() { ::close(m_descriptor); }
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;

    /// Appends the bytes that can be read now. Returns false at the end of the file, and if none is there.
    [[nodiscard]] bool readInto(std::string& text) {
        std::array<char, 65536> bytes{};
        const ssize_t count = ::read(m_descriptor, bytes.data(), bytes.size());
        if (count < 0 && errno != EAGAIN && errno != EINTR) {
            fail(errno);
        }
        // A pipe without a writer looks as if it were at its end.
        m_isAtEnd = count == 0 && (!isPipe() || !text.empty());
        text.append(bytes.data(), count > 0 ? static_cast<std::size_t>(count) : 0);
        return count > 0;
    }

    [[nodiscard]] bool isAtEnd() const noexcept { return m_isAtEnd; }

    /// Waits until more can be read, or the writer has closed the pipe.
    void awaitMore(Clock::time_point end) {
        const auto time = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now());
        pollfd wait{m_descriptor, POLLIN, 0};
        const int ready = time.count() <= 0 ? 0 : ::poll(&wait, 1, static_cast<int>(time.count()));
        if (ready == 0) {
            throw std::runtime_error("it is a pipe that does not deliver all in five seconds");
        }
        if (ready < 0 && errno != EINTR) {
            fail(errno);
        }
        m_isAtEnd = ready > 0 && (wait.revents & POLLIN) == 0;
    }

private:
    [[nodiscard]] bool isPipe() const { return ::lseek(m_descriptor, 0, SEEK_CUR) < 0 && errno == ESPIPE; }

    const int m_descriptor;
    bool m_isAtEnd = false;
};

}  // namespace

std::string readWholeFile(const std::filesystem::path& file, std::size_t most) {
    OpenFile open(file);
    std::string text;
    const auto end = Clock::now() + kTimeOfPipe;
    while (true) {
        const bool goesOn = open.readInto(text);
        if (text.size() > most) {
            throw std::runtime_error("it has more than " + std::to_string(most) + " bytes");
        }
        if (!goesOn && !open.isAtEnd()) {
            open.awaitMore(end);
        }
        if (open.isAtEnd()) {
            return text;
        }
    }
}

}  // namespace host
