#include "host/sip/PhoneProcess.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <stdexcept>
#include <string_view>
#include <system_error>
#include <thread>
#include <utility>

#include "host/framework/FileDescriptor.h"
#include "platform/logging/Logging.h"

namespace host {

namespace {

constexpr const char* kComponent = "SIP Gateway";
constexpr std::size_t kMostLineBytes = 500;

/// Runs in the child. Requires: only async-signal-safe functions are called.
[[noreturn]] void execPhone(char* const* arguments, int output, int nothing, pid_t parent) noexcept {
    sigset_t none;
    ::sigemptyset(&none);
    ::pthread_sigmask(SIG_SETMASK, &none, nullptr);
    std::signal(SIGPIPE, SIG_DFL);
    ::setpgid(0, 0);
    ::prctl(PR_SET_PDEATHSIG, SIGTERM);
    if (::getppid() == parent && ::dup2(nothing, STDIN_FILENO) >= 0 && ::dup2(output, STDOUT_FILENO) >= 0 &&
        ::dup2(output, STDERR_FILENO) >= 0) {
        // The sockets of this program must not stay open in the child.
        ::close_range(STDERR_FILENO + 1, ~0U, 0);
        ::execv(arguments[0], arguments);
    }
    ::_exit(127);
}

bool hasEnded(pid_t id) {
    const pid_t result = ::waitpid(id, nullptr, WNOHANG);
    return result == id || (result < 0 && errno != EINTR);
}

/// Waits for the child, and kills it after the limit.
void reap(pid_t id, std::chrono::milliseconds limit) {
    const auto deadline = std::chrono::steady_clock::now() + limit;
    while (!hasEnded(id)) {
        if (std::chrono::steady_clock::now() > deadline) {
            ::kill(id, SIGKILL);
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
}

/// Without what selects colours: ESC [ up to a letter.
std::string withoutTerminalCodes(std::string_view line) {
    constexpr std::string_view kBegin = "\x1b[";
    std::string text;
    while (!line.empty()) {
        if (line.starts_with(kBegin)) {
            line.remove_prefix(kBegin.size());
            const std::size_t letter = line.find_first_not_of("0123456789;");
            line.remove_prefix(letter == std::string_view::npos ? line.size() : letter + 1);
        } else {
            text += line.front();
            line.remove_prefix(1);
        }
    }
    return text;
}

}  // namespace

std::filesystem::path findBaresip() {
    const char* path = std::getenv("PATH");
    std::string_view folders = path == nullptr ? "/usr/bin" : path;
    while (!folders.empty()) {
        const std::size_t colon = folders.find(':');
        std::filesystem::path program = std::filesystem::path(folders.substr(0, colon)) / "baresip";
        if (::access(program.c_str(), X_OK) == 0) {
            return program;
        }
        folders.remove_prefix(colon == std::string_view::npos ? folders.size() : colon + 1);
    }
    throw std::runtime_error(
        "baresip, the SIP telephone, is not installed: apt-get install --no-install-recommends baresip-core");
}

/// The output of the telephone, as lines in the log.
struct PhoneProcess::Output : std::enable_shared_from_this<Output> {
    Output(asio::io_context& io, int descriptor, Handlers toCall)
        : stream(io, descriptor), handlers(std::move(toCall)) {}

    void read() {
        stream.async_read_some(asio::buffer(bytes),
                               [self = shared_from_this()](std::error_code error, std::size_t size) {
                                   self->received(error, size);
                               });
    }

    void received(std::error_code error, std::size_t size) {
        if (!handlers.ended) {
            return;
        }
        if (error) {
            const auto ended = std::exchange(handlers.ended, nullptr);
            ended(lastLine);
            return;
        }
        for (const char c : std::string_view(bytes.data(), size)) {
            if (c == '\n') {
                endLine();
            } else if (line.size() < kMostLineBytes) {
                line += c;
            }
        }
        read();
    }

    void endLine() {
        const std::string text = withoutTerminalCodes(line);
        if (!text.empty()) {
            logAppUni(kComponent, __FILE_NAME__, 6, __LINE__, "baresip: %s", text.c_str());
            handlers.printed(text);
            note(text, line.find("\x1b[31m") != std::string::npos);
        }
        line.clear();
    }

    /// baresip prints its errors in red. The first of those before the end is the cause of the others.
    void note(const std::string& text, bool isError) {
        constexpr std::string_view kStop = "ua: stop all";  // before each end
        if (text.starts_with(kStop)) {
            return;
        }
        if (!isError || !hasError) {
            lastLine = text;
        }
        hasError = isError;
    }

    asio::posix::stream_descriptor stream;
    Handlers handlers;
    std::array<char, 4096> bytes{};
    std::string line;
    /// The line of the output that best explains the end of the process.
    std::string lastLine;
    bool hasError = false;
};

PhoneProcess::PhoneProcess(asio::io_context& io, const std::filesystem::path& program,
                           const std::filesystem::path& directory, Handlers handlers) {
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
        throw std::system_error(errno, std::generic_category(), "cannot make a pipe");
    }
    FileDescriptor ours(ends[0]);
    const FileDescriptor theirs(ends[1]);
    const FileDescriptor nothing(::open("/dev/null", O_RDONLY | O_CLOEXEC));
    std::string name = program.string();
    std::string option = "-f";
    std::string path = directory.string();
    const std::array<char*, 4> arguments{name.data(), option.data(), path.data(), nullptr};

    const pid_t parent = ::getpid();
    m_id = ::fork();
    if (m_id == 0) {
        execPhone(arguments.data(), theirs.get(), nothing.get(), parent);
    }
    if (m_id < 0) {
        throw std::system_error(errno, std::generic_category(), "cannot start baresip");
    }
    m_output = std::make_shared<Output>(io, ours.release(), std::move(handlers));
    m_output->read();
}

PhoneProcess::~PhoneProcess() {
    m_output->handlers.ended = nullptr;
    ::kill(m_id, SIGTERM);
    // The output stays open until then: its end would kill the telephone before it hangs up.
    reap(m_id, std::chrono::seconds(1));
    std::error_code ignored;
    m_output->stream.close(ignored);
}

}  // namespace host
