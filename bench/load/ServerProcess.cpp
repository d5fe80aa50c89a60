#include "bench/load/ServerProcess.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <thread>

#include "bench/load/SystemCall.h"
#include "host/remote/RemoteClient.h"
#include "host/remote/RemoteError.h"

namespace bench {

namespace {

constexpr auto kStartLimit = std::chrono::seconds(20);

/// The text of a file in /proc about a process.
std::string procText(pid_t id, const char* name) {
    std::ifstream file("/proc/" + std::to_string(id) + '/' + name);
    return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace

ServerProcess::ServerProcess(std::vector<std::string> command, const std::filesystem::path& data,
                             const std::string& switchAddress)
    : m_data(data) {
    std::filesystem::create_directories(data);
    command.insert(command.end(), {"--data", data.string(), "--switch", switchAddress});
    std::vector<char*> arguments;
    arguments.reserve(command.size() + 1);
    for (std::string& text : command) {
        arguments.push_back(text.data());
    }
    arguments.push_back(nullptr);
    const std::string log = (data / "server.log").string();

    m_id = checked(::fork(), "fork");
    if (m_id == 0) {
        ::prctl(PR_SET_PDEATHSIG, SIGTERM);
        const int file = ::open(log.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        const int none = ::open("/dev/null", O_RDWR);
        if (file >= 0 && ::dup2(none, STDIN_FILENO) >= 0 && ::dup2(none, STDOUT_FILENO) >= 0 &&
            ::dup2(file, STDERR_FILENO) >= 0) {
            ::execvp(arguments.front(), arguments.data());
        }
        ::_exit(127);
    }
}

ServerProcess::~ServerProcess() {
    ::kill(measuredProcess(), SIGTERM);
    ::waitpid(m_id, nullptr, 0);
}

void ServerProcess::awaitSocket() const {
    const auto end = std::chrono::steady_clock::now() + kStartLimit;
    while (std::chrono::steady_clock::now() < end) {
        try {
            const host::RemoteClient client(m_data);
            return;
        } catch (const host::RemoteError&) {
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
    }
    throw std::runtime_error("the server does not start, see " + (m_data / "server.log").string());
}

pid_t ServerProcess::measuredProcess() const {
    const std::string number = std::to_string(m_id);
    pid_t child = 0;
    std::istringstream children(procText(m_id, ("task/" + number + "/children").c_str()));
    return children >> child ? child : m_id;
}

std::chrono::microseconds ServerProcess::processorTime() const {
    const std::string text = procText(measuredProcess(), "stat");
    std::istringstream fields(text.substr(text.rfind(')') + 2));
    // The fields from the third on; user and system time are the 14th and the 15th.
    std::string skipped;
    for (int field = 3; field < 14; ++field) {
        fields >> skipped;
    }
    long user = 0;
    long system = 0;
    fields >> user >> system;
    return std::chrono::microseconds((user + system) * 1'000'000 / ::sysconf(_SC_CLK_TCK));
}

std::size_t ServerProcess::residentKib() const {
    std::istringstream fields(procText(measuredProcess(), "statm"));
    std::size_t total = 0;
    std::size_t resident = 0;
    fields >> total >> resident;
    return resident * static_cast<std::size_t>(::sysconf(_SC_PAGESIZE)) / 1024;
}

}  // namespace bench
