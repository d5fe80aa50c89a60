#pragma once

#include <functional>
#include <optional>

namespace journal {

/// Raises the nice value by 5 (to the highest value from 14 on) for its life, so that the rest of the phone
/// runs first, and restores the former value in its destructor.
///
/// It changes the calling thread. On Linux a nice value belongs to a thread, and a request with the id of the
/// process sets only the main thread's value, which may be another thread; elsewhere the value is the
/// process's.
///
/// A process without privileges may raise its nice value but not lower it: each event would make it
/// permanently slower. So the value is changed only if it can be restored: if the limit RLIMIT_NICE allows
/// the former value, or if the process may set a value below it, which is tried first. Otherwise the work is
/// done at the current priority. An operator allows the change by the limit alone (systemd: `LimitNICE=+0`).
///
/// Lives on the stack of one thread.
class LoweredPriority {
public:
    /// The system calls; a test replaces them.
    struct Kernel {
        /// The nice value now; std::nullopt when it cannot be read.
        std::function<std::optional<int>()> nice;
        /// False when the value is refused. Values beyond the range count as its end.
        std::function<bool(int)> setNice;
        /// The least nice value that a process without privileges may set.
        std::function<int()> leastAllowed;
    };
    static const Kernel& callingThread();

    /// `operation` is the name in the log texts; it and `kernel` are borrowed and outlive this object.
    explicit LoweredPriority(const char* operation, const Kernel& kernel = callingThread());
    LoweredPriority(const LoweredPriority&) = delete;
    LoweredPriority& operator=(const LoweredPriority&) = delete;
    ~LoweredPriority();

private:
    [[nodiscard]] bool canRestore(int former) const;
    [[nodiscard]] int niceNow() const;

    const char* const m_operation;
    const Kernel& m_kernel;
    // The value to restore; std::nullopt when it was not changed.
    std::optional<int> m_former;
};

}  // namespace journal
