#include "host/csta-server/SwitchClient.h"

#include <string_view>
#include <system_error>
#include <utility>

namespace host {

SwitchClient::SwitchClient(asio::ip::tcp::socket socket, int number, Handlers handlers)
    : m_socket(std::move(socket)), m_number(number), m_handlers(std::move(handlers)) {
    std::error_code ignored;
    m_socket.tcp().set_option(asio::ip::tcp::no_delay(true), ignored);
}

void SwitchClient::start(StreamSocket::Context tls, std::function<void()> ready) {
    if (!tls) {
        read();
        ready();
        return;
    }
    m_socket.beServer(std::move(tls),
                      [self = shared_from_this(), ready = std::move(ready)](const std::error_code& error) {
                          if (!self->m_open) {
                              return;
                          }
                          if (error) {
                              self->fail();
                              return;
                          }
                          self->read();
                          ready();
                      });
}

void SwitchClient::send(int invokeId, const std::string& xml) {
    std::optional<std::string> bytes = encodeFrame(invokeId, xml);
    if (!m_open || !bytes) {
        return;
    }
    m_queue.push(std::move(*bytes), [self = shared_from_this()](const std::error_code& error) {
        if (error) {
            self->fail();
        }
    });
    if (m_queue.bytes() > kMaxQueuedBytes) {
        fail();
    }
}

void SwitchClient::close() {
    m_open = false;
    m_socket.close();
    m_queue.clear();
}

void SwitchClient::read() {
    m_socket.async_read_some(asio::buffer(m_received),
                             [this, self = shared_from_this()](std::error_code error, std::size_t received) {
                                 if (!m_open) {
                                     return;
                                 }
                                 if (error) {
                                     fail();
                                     return;
                                 }
                                 m_reader.feed(std::string_view(m_received.data(), received));
                                 while (const std::optional<Frame> frame = m_reader.next()) {
                                     m_handlers.frame(*this, *frame);
                                     if (!m_open) {
                                         return;
                                     }
                                 }
                                 if (m_reader.isLost()) {
                                     fail();
                                     return;
                                 }
                                 read();
                             });
}

void SwitchClient::fail() {
    const std::shared_ptr<SwitchClient> self = shared_from_this();
    close();
    m_handlers.closed(*this);
}

}  // namespace host
