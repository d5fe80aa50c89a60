#pragma once

#include "host/framework/FileDescriptor.h"

namespace calljournal {

/// Turns SIGINT and SIGTERM, which ask the program to end, into something that can be waited for. SIGPIPE is ignored
/// from then on, so that a reader who goes away shows as a failed write.
///
/// Made on the main thread before any other is started: threads inherit that the signals are held back. Once a process.
class StopSignal {
public:
    StopSignal();
    StopSignal(const StopSignal&) = delete;
    StopSignal& operator=(const StopSignal&) = delete;
    ~StopSignal() = default;

    /// Readable as soon as the program is to end; to wait for together with other descriptors.
    [[nodiscard]] int descriptor() const noexcept { return m_descriptor.get(); }

    /// Waits until the program is to end, or until `other` is readable or at its end: false then. -1 stands for none.
    [[nodiscard]] bool wait(int other = -1) const;

    /// Lets the signals through again, in a forked child before it becomes another program. Async-signal-safe.
    static void restoreInChild() noexcept;

private:
    host::FileDescriptor m_descriptor;
};

}  // namespace calljournal
