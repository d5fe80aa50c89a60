#include "host/csta-wire/SendQueue.h"

#include <utility>

#include <asio/write.hpp>

namespace host {

void SendQueue::push(std::string bytes, Handler done) {
    m_bytes += bytes.size();
    m_entries->push_back({std::move(bytes), std::move(done)});
    if (m_entries->size() == 1) {
        write();
    }
}

void SendQueue::clear() {
    m_entries = std::make_shared<Entries>();
    m_bytes = 0;
}

void SendQueue::write() {
    asio::async_write(m_socket, asio::buffer(m_entries->front().bytes),
                      [this, entries = m_entries, done = m_entries->front().done](
                          const std::error_code& error, std::size_t written) {
                          if (entries != m_entries) {
                              return;
                          }
                          m_bytes -= written;
                          done(error);
                          if (error || entries != m_entries) {
                              return;
                          }
                          m_entries->pop_front();
                          if (!m_entries->empty()) {
                              write();
                          }
                      });
}

}  // namespace host
