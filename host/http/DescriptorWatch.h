#pragma once

#include <asio/io_context.hpp>
#include <asio/steady_timer.hpp>
#include <chrono>
#include <functional>

namespace host {

/// Logs once that the process ran out of file descriptors, and once that it has some again. The HTTP library
/// does not report an accept that failed.
///
/// Call from the thread of the loop only.
class DescriptorWatch {
public:
    using Clock = std::chrono::steady_clock;

    /// `returned` is called when there are descriptors again. The loop is borrowed and outlives this object.
    DescriptorWatch(asio::io_context& loop, std::function<void()> returned);

    void start(Clock::duration interval);
    void stop();

private:
    void check();

    asio::steady_timer m_timer;
    const std::function<void()> m_returned;
    bool m_exhausted = false;
};

}  // namespace host
