#pragma once

#include <sys/types.h>

#include <chrono>
#include <string>
#include <vector>

#include "host/framework/FileDescriptor.h"

namespace calljournal {

/// This program once more, with other arguments, in a process of its own whose standard output we read.
///
/// It is in a process group of its own: Ctrl-C reaches us alone, and we end it when we are through with it.
/// The child is asked to end (SIGTERM) when the object is destroyed, and by the system when this process dies in whatever
/// way. Threads: the main thread only, which must live as long as the child.
class ChildProcess {
public:
    /// `arguments` without the program's name. Throws `std::system_error`.
    explicit ChildProcess(const std::vector<std::string>& arguments);
    /// Ends the child and waits for that.
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    [[nodiscard]] pid_t id() const noexcept { return m_id; }

    /// The next line of its output, without the line feed; empty when the child ends or writes none within the limit.
    [[nodiscard]] std::string readLine(std::chrono::milliseconds limit);

    /// Readable when the child has written something, and when it has ended.
    [[nodiscard]] int output() const noexcept { return m_output.get(); }
    /// Takes what can be read from `output` away; false when the child has ended.
    [[nodiscard]] bool discardOutput();

private:
    pid_t m_id = -1;
    host::FileDescriptor m_output;
};

}  // namespace calljournal
