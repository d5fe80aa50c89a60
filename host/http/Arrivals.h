#pragma once

#include <openssl/ssl.h>

#include <asio/error.hpp>
#include <asio/ip/tcp.hpp>
#include <asio/steady_timer.hpp>
#include <asio/write.hpp>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <restinio/tls_fwd.hpp>
#include <string>
#include <system_error>
#include <utility>

#include "host/http/ClosableSocket.h"

namespace host {

/// The steps of a connection before the HTTP library reads its first request:
///
///  1. `arrived` is called, so that the connection counts from its begin, also while it shakes hands.
///  2. With a certificate, the client has `limit` for the TLS handshake. One that speaks HTTP without TLS is
///     told so.
///
/// Call from the server's loop thread only; one object for each such thread.
class Arrivals {
public:
    struct Settings {
        std::function<void(std::uint64_t id, const ClosableSocket& socket)> arrived;
        /// Returns the certificate of new connections; without TLS, `nullptr`.
        std::function<StreamSocket::Context()> context;
        std::chrono::milliseconds limit;
    };

    explicit Arrivals(Settings settings) : m_settings(std::move(settings)) { ofThisThread() = this; }
    Arrivals(const Arrivals&) = delete;
    Arrivals& operator=(const Arrivals&) = delete;

    /// The object of the server that runs on this thread. The library gives no access to it.
    static Arrivals*& ofThisThread() noexcept {
        thread_local Arrivals* arrivals = nullptr;
        return arrivals;
    }

    /// Calls one of the two functions when the connection can be read, or has failed.
    template <typename Connection, typename Ready, typename Failed>
    void prepare(ClosableSocket& socket, const std::shared_ptr<Connection>& connection, Ready ready,
                 Failed failed) {
        m_settings.arrived(connection->connection_id(), socket);
        StreamSocket::Context context = m_settings.context();
        if (!context) {
            ready();
            return;
        }
        const auto timer = std::make_shared<asio::steady_timer>(socket.get_executor(), m_settings.limit);
        timer->async_wait([handle = socket.handle()](const std::error_code& error) {
            if (!error) {
                ClosableSocket::shutDown(handle);
            }
        });
        socket.beServer(std::move(context),
                        [&socket, connection, timer, ready = std::move(ready),
                         failed = std::move(failed)](const std::error_code& error) mutable {
                            timer->cancel();
                            if (!error) {
                                ready();
                            } else if (isPlainHttp(error)) {
                                tellOfTls(socket, connection, error, std::move(failed));
                            } else {
                                failed(error);
                            }
                        });
    }

private:
    [[nodiscard]] static bool isPlainHttp(const std::error_code& error) {
        return error.category() == asio::error::get_ssl_category() &&
               ERR_GET_REASON(static_cast<unsigned long>(error.value())) == SSL_R_HTTP_REQUEST;
    }

    template <typename Connection, typename Failed>
    static void tellOfTls(ClosableSocket& socket, const std::shared_ptr<Connection>& connection,
                          const std::error_code& error, Failed failed) {
        static const std::string kText = "This server speaks HTTPS: write https:// before its address.\n";
        static const std::string kResponse =
            "HTTP/1.1 400 Bad Request\r\nContent-Type: text/plain\r\nContent-Length: " +
            std::to_string(kText.size()) + "\r\nConnection: close\r\n\r\n" + kText;
        asio::async_write(
            socket.tcp(), asio::buffer(kResponse),
            [connection, error, failed = std::move(failed)](
                const std::error_code& /*written*/, std::size_t /*bytes*/) mutable { failed(error); });
    }

    const Settings m_settings;
};

// The HTTP library calls these two for each accepted connection; it finds them by the type of the socket.

/// Ours is not of the library's own class with TLS.
inline restinio::tls_socket_t* make_tls_socket_pointer_for_state_listener(
    const ClosableSocket& /*socket*/) noexcept {
    return nullptr;
}

template <typename Connection, typename Ready, typename Failed>
void prepare_connection_and_start_read(ClosableSocket& socket, Connection& connection, Ready ready,
                                       Failed failed) {
    Arrivals::ofThisThread()->prepare(socket, connection.shared_from_this(), std::move(ready),
                                      std::move(failed));
}

}  // namespace host
