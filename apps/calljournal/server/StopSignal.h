#pragma once

#include <chrono>
#include <optional>

#include "host/framework/FileDescriptor.h"

namespace calljournal {

/// Turns SIGHUP, SIGINT and SIGTERM into a descriptor that a thread can wait for. Ignores SIGPIPE, so that a
/// closed output is a failed write.
///
/// Construct once in a process, on the main thread, before any other thread is started: threads inherit the
/// blocked signals.
class StopSignal {
public:
    StopSignal();
    StopSignal(const StopSignal&) = delete;
    StopSignal& operator=(const StopSignal&) = delete;
    ~StopSignal() = default;

    /// Readable after a signal; for waiting together with other descriptors.
    [[nodiscard]] int descriptor() const noexcept { return m_descriptor.get(); }

    /// Waits for a signal or until `other` is readable or at its end; false for the latter. -1: no other
    /// descriptor.
    [[nodiscard]] bool wait(int other = -1) const;

    /// Waits for a signal, takes it and returns its number; std::nullopt after `limit`.
    [[nodiscard]] std::optional<int> next(std::optional<std::chrono::milliseconds> limit) const;

    /// True if a signal has come.
    [[nodiscard]] bool hasCome() const;

    /// Unblocks the signals. Call in a forked child before it executes another program. Async-signal-safe.
    static void restoreInChild() noexcept;

private:
    host::FileDescriptor m_descriptor;
};

}  // namespace calljournal
