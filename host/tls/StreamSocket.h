#pragma once

#include <memory>
#include <optional>
#include <string>
#include <system_error>
#include <utility>

#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>
#include <asio/ssl/context.hpp>
#include <asio/ssl/stream.hpp>

namespace host {

/// A TCP socket whose bytes are encrypted from a handshake on. Fits the functions of Asio that take a stream.
///
/// Operations that are pending keep what they need, so the object may be closed, replaced or destroyed at any
/// time. Not thread-safe; one read and one write may be pending at the same time.
class StreamSocket {
public:
    using Tcp = asio::ip::tcp::socket;
    using executor_type = Tcp::executor_type;
    using lowest_layer_type = Tcp;
    using Context = std::shared_ptr<asio::ssl::context>;

    explicit StreamSocket(asio::io_context& io) : StreamSocket(Tcp(io)) {}
    explicit StreamSocket(Tcp socket) : m_layers(std::make_shared<Layers>(std::move(socket))) {}

    [[nodiscard]] Tcp& tcp() noexcept { return m_layers->socket; }
    [[nodiscard]] const Tcp& tcp() const noexcept { return m_layers->socket; }
    [[nodiscard]] executor_type get_executor() { return tcp().get_executor(); }
    [[nodiscard]] lowest_layer_type& lowest_layer() noexcept { return tcp(); }
    [[nodiscard]] const lowest_layer_type& lowest_layer() const noexcept { return tcp(); }

    /// Closes the socket at once. Pending operations fail.
    void close() noexcept {
        std::error_code ignored;
        tcp().close(ignored);
    }

    /// Begins TLS as the server. `done` is called with the error, if any. Requires: connected, no TLS yet.
    template <typename Done>
    void beServer(Context context, Done done) {
        encrypt(std::move(context));
        handshake(asio::ssl::stream_base::server, std::move(done));
    }
    /// Begins TLS as the client of a server with that name or address, by which its certificate is checked.
    template <typename Done>
    void beClient(Context context, const std::string& server, Done done) {
        encrypt(std::move(context));
        expectServer(server);
        handshake(asio::ssl::stream_base::client, std::move(done));
    }
    /// The reason for which a handshake has failed, as a text for the user.
    [[nodiscard]] std::string reasonOf(const std::error_code& error) const;

    template <typename Buffers, typename Handler>
    void async_read_some(const Buffers& buffers, Handler&& handler) {
        if (m_layers->tls) {
            m_layers->tls->async_read_some(buffers, kept(std::forward<Handler>(handler)));
        } else {
            tcp().async_read_some(buffers, std::forward<Handler>(handler));
        }
    }
    template <typename Buffers, typename Handler>
    void async_write_some(const Buffers& buffers, Handler&& handler) {
        if (m_layers->tls) {
            m_layers->tls->async_write_some(buffers, kept(std::forward<Handler>(handler)));
        } else {
            tcp().async_write_some(buffers, std::forward<Handler>(handler));
        }
    }

private:
    struct Layers {
        explicit Layers(Tcp plain) : socket(std::move(plain)) {}

        Tcp socket;
        Context context;
        std::optional<asio::ssl::stream<Tcp&>> tls;
    };

    void encrypt(Context context);
    void expectServer(const std::string& server);

    template <typename Done>
    void handshake(asio::ssl::stream_base::handshake_type type, Done done) {
        m_layers->tls->async_handshake(type, [layers = m_layers, done = std::move(done)](
                                                 const std::error_code& error) mutable { done(error); });
    }
    /// The handler, with what the operation uses until it calls it.
    template <typename Handler>
    [[nodiscard]] auto kept(Handler&& handler) {
        return [layers = m_layers, handler = std::forward<Handler>(handler)](
                   const std::error_code& error, std::size_t bytes) mutable { handler(error, bytes); };
    }

    std::shared_ptr<Layers> m_layers;
};

}  // namespace host
