#pragma once

#include <asio/any_io_executor.hpp>
#include <atomic>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

namespace host {

/// The clients to which the reader thread has to write. A notification of many clients wakes that thread
/// once.
///
/// Thread-safe. Lifetime: outlives the work of `reader`.
class PendingWrites {
public:
    class Client {
    public:
        Client() = default;
        Client(const Client&) = delete;
        Client& operator=(const Client&) = delete;
        virtual ~Client() = default;
        /// Writes what waits. Called on the reader thread.
        virtual void writeNext() = 0;
    };

    explicit PendingWrites(asio::any_io_executor reader) : m_reader(std::move(reader)) {}

    /// Counts a client that is connected, until its `leave()`. Any thread may call both.
    void join() noexcept { ++m_count; }
    void leave() noexcept { --m_count; }
    /// True if a thread that notifies them loses little time when it writes itself.
    [[nodiscard]] bool hasFewClients() const noexcept { return m_count <= kFew; }

    /// Calls `writeNext` of the client on the reader thread, soon, if the client exists then.
    void add(std::weak_ptr<Client> client);

private:
    void writeAll();

    static constexpr int kFew = 4;

    const asio::any_io_executor m_reader;
    std::atomic<int> m_count{0};

    std::mutex m_mutex;
    // Guarded by m_mutex.
    std::vector<std::weak_ptr<Client>> m_clients;
};

}  // namespace host
