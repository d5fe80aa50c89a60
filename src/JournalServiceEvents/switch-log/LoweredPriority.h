#pragma once

#include <functional>
#include <optional>

namespace journal {

/// Makes way for the rest of the phone: raises the nice value by 5 (to the highest from 14 on) for as long as it lives,
/// and puts the former value back when it goes, on every path.
///
/// What it changes is the calling thread. On Linux a nice value belongs to a thread, and asking for the process's by its
/// id reaches the main thread alone, which need not be the one that works; elsewhere the value is the process's.
///
/// A process without privileges may raise its nice value and not take it back: each event would leave it slower, for
/// ever. So the value is changed only where the way back is open: where the limit RLIMIT_NICE allows the former value, or
/// where the process may set a value below it, which is tried out first. Where it is not, the work is done at the priority
/// that the process has. An operator opens the way by the limit alone (systemd: `LimitNICE=+0`).
///
/// Lives on the stack of one thread.
class LoweredPriority {
public:
    /// What the kernel is asked; a test brings its own.
    struct Kernel {
        /// The nice value now; nothing when it cannot be told.
        std::function<std::optional<int>()> nice;
        /// False when the value is refused. Values beyond the range count as its end.
        std::function<bool(int)> setNice;
        /// The least nice value that a process without privileges may set.
        std::function<int()> leastAllowed;
    };
    static const Kernel& callingThread();

    /// `operation` names the lines in the log; it and `kernel` are borrowed and outlive the object.
    explicit LoweredPriority(const char* operation, const Kernel& kernel = callingThread());
    LoweredPriority(const LoweredPriority&) = delete;
    LoweredPriority& operator=(const LoweredPriority&) = delete;
    ~LoweredPriority();

private:
    [[nodiscard]] bool canTakeBack(int former) const;
    [[nodiscard]] int niceNow() const;

    const char* const m_operation;
    const Kernel& m_kernel;
    // What is to be put back; nothing when nothing was changed.
    std::optional<int> m_former;
};

}  // namespace journal
