#pragma once

#include <asio/io_context.hpp>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

namespace host {

/// The two threads of a link to a switch. One of them, the reader, runs the handlers of the loop; the other
/// waits. The reader may leave to carry out work that the messages have caused, on the spot, without the
/// wake-up of a third thread; meanwhile the other one reads. So work that waits for the switch gets its
/// response.
///
/// What belongs to the reader needs no further lock: the change of the reader synchronises its threads.
class LinkThreads {
public:
    /// Starts the threads. `repair` is called on the reader when a handler has thrown, because the handler
    /// may not have started its next operation. Requires: `loop` has work until its end is wanted.
    LinkThreads(asio::io_context& loop, std::function<void()> repair);
    /// Requires: `join` was called.
    ~LinkThreads() = default;
    LinkThreads(const LinkThreads&) = delete;
    LinkThreads& operator=(const LinkThreads&) = delete;

    /// True on the reader.
    [[nodiscard]] bool isReader() const;

    /// Carries out `work` on this thread when the present handler has returned, while the other thread reads.
    /// Returns false if the other thread has not come back from its own work, or this one has such work
    /// already. Reader only.
    [[nodiscard]] bool leaveFor(std::function<void()> work);

    /// Waits until the loop has no more work and both threads have ended.
    void join();

private:
    void run();
    void lead();

    asio::io_context& m_loop;
    const std::function<void()> m_repair;

    mutable std::mutex m_mutex;
    std::condition_variable m_free;
    // Guarded by m_mutex.
    std::thread::id m_reader;
    int m_followers = 0;
    bool m_ended = false;

    /// Used by the reader only.
    std::function<void()> m_work;

    std::thread m_first;
    std::thread m_second;
};

}  // namespace host
