#pragma once

#include <atomic>
#include <cstddef>
#include <memory>
#include <thread>
#include <vector>

#include "bench/load/ObserverSocket.h"
#include "host/framework/FileDescriptor.h"

namespace bench {

/// Observers beside the one that is measured. A thread discards what they receive.
class ObserverCrowd {
public:
    ObserverCrowd() = default;
    /// Joins the thread and disconnects the observers.
    ~ObserverCrowd();
    ObserverCrowd(const ObserverCrowd&) = delete;
    ObserverCrowd& operator=(const ObserverCrowd&) = delete;

    /// Adds `count` observers that read, or that never do. Call before `start`. Throws as `ObserverSocket`
    /// does.
    void add(ObserverSocket::Kind kind, std::size_t count, const std::filesystem::path& data,
             bool reads = true);
    void start();
    /// The number of bytes that all have received. Any thread.
    [[nodiscard]] std::size_t receivedBytes() const noexcept { return m_bytes; }
    /// The number of reading observers that the server has disconnected. Any thread.
    [[nodiscard]] std::size_t disconnected() const noexcept { return m_disconnected; }

private:
    void discard();

    std::vector<std::unique_ptr<ObserverSocket>> m_readers;
    std::vector<std::unique_ptr<ObserverSocket>> m_stopped;
    host::FileDescriptor m_poll;
    host::FileDescriptor m_end;
    std::thread m_thread;
    std::atomic<std::size_t> m_bytes{0};
    std::atomic<std::size_t> m_disconnected{0};
};

}  // namespace bench
