#include "apps/calljournal/server/ChildProcess.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <system_error>

#include "apps/calljournal/server/StopSignal.h"

namespace calljournal {
namespace {

/// Runs in the child. Requires: only async-signal-safe functions are called.
[[noreturn]] void execProgram(char* const* arguments, int output, pid_t parent) noexcept {
    StopSignal::restoreInChild();
    ::setpgid(0, 0);
    ::prctl(PR_SET_PDEATHSIG, SIGTERM);
    if (::getppid() == parent && ::dup2(output, STDOUT_FILENO) >= 0) {
        ::execv("/proc/self/exe", arguments);
    }
    ::_exit(127);
}

}  // namespace

ChildProcess::ChildProcess(const std::vector<std::string>& arguments) {
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
        throw std::system_error(errno, std::generic_category(), "cannot make a pipe");
    }
    m_output = host::FileDescriptor(ends[0]);
    const host::FileDescriptor childEnd(ends[1]);

    std::vector<std::string> texts{"calljournal"};
    texts.insert(texts.end(), arguments.begin(), arguments.end());
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (std::string& text : texts) {
        pointers.push_back(text.data());
    }
    pointers.push_back(nullptr);

    const pid_t parent = ::getpid();
    m_id = ::fork();
    if (m_id == 0) {
        execProgram(pointers.data(), childEnd.get(), parent);
    }
    if (m_id < 0) {
        throw std::system_error(errno, std::generic_category(), "cannot start a process");
    }
}

ChildProcess::~ChildProcess() {
    ::kill(m_id, SIGTERM);
    while (::waitpid(m_id, nullptr, 0) < 0 && errno == EINTR) {}
}

std::string ChildProcess::readLine(std::chrono::milliseconds limit) {
    const auto deadline = std::chrono::steady_clock::now() + limit;
    std::string line;
    for (;;) {
        const auto left =
            std::chrono::ceil<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
        pollfd wait{m_output.get(), POLLIN, 0};
        const int ready = left.count() > 0 ? ::poll(&wait, 1, static_cast<int>(left.count())) : 0;
        if (ready < 0 && errno == EINTR) {
            continue;
        }
        char byte = 0;
        if (ready <= 0 || ::read(m_output.get(), &byte, 1) != 1) {
            return {};
        }
        if (byte == '\n') {
            return line;
        }
        line += byte;
    }
}

bool ChildProcess::discardOutput() {
    std::array<char, 4096> bytes{};
    return ::read(m_output.get(), bytes.data(), bytes.size()) > 0;
}

}  // namespace calljournal
