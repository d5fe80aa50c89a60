#pragma once

#include <sys/types.h>

#include <chrono>
#include <string>
#include <vector>

#include "host/framework/FileDescriptor.h"

namespace calljournal {

/// A child process that runs this program with other arguments. The parent reads its standard output.
///
/// The child has its own process group, so Ctrl-C reaches only the parent. The destructor sends SIGTERM to
/// the child; the kernel sends it if the parent dies. Call from the main thread only, which must outlive the
/// child.
class ChildProcess {
public:
    /// Starts the child. `arguments` does not contain the program's name. Throws `std::system_error`.
    explicit ChildProcess(const std::vector<std::string>& arguments);
    /// Ends the child and waits until it has ended.
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    [[nodiscard]] pid_t id() const noexcept { return m_id; }

    /// Returns the next text line of the child's output, without the line feed; empty if the child ends or
    /// writes none within the limit.
    [[nodiscard]] std::string readLine(std::chrono::milliseconds limit);

    /// A descriptor that is readable when the child has written output or has ended.
    [[nodiscard]] int output() const noexcept { return m_output.get(); }
    /// Discards the output that can be read; false if the child has ended.
    [[nodiscard]] bool discardOutput();

private:
    pid_t m_id = -1;
    host::FileDescriptor m_output;
};

}  // namespace calljournal
