#pragma once

#include <sys/types.h>

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

namespace bench {

/// The measured server as a child process. Its standard error output is the file `server.log` in its data
/// directory.
///
/// Not thread-safe. Errors: operations throw `std::system_error` or `std::runtime_error`.
class ServerProcess {
public:
    /// Starts `command` with `--data` and `--switch` appended.
    ServerProcess(std::vector<std::string> command, const std::filesystem::path& data,
                  const std::string& switchAddress);
    /// Asks the server to end, and waits for it.
    ~ServerProcess();
    ServerProcess(const ServerProcess&) = delete;
    ServerProcess& operator=(const ServerProcess&) = delete;

    /// Waits until remote clients can connect.
    void awaitSocket() const;

    /// The processor time of the server so far; of its child if the server is a tool such as perf that has
    /// one.
    [[nodiscard]] std::chrono::microseconds processorTime() const;
    /// The resident memory of the same process, in KiB.
    [[nodiscard]] std::size_t residentKib() const;

private:
    [[nodiscard]] pid_t measuredProcess() const;

    std::filesystem::path m_data;
    pid_t m_id = -1;
};

}  // namespace bench
