#include "host/remote/PendingWrites.h"

#include <asio/post.hpp>

namespace host {

void PendingWrites::add(std::weak_ptr<Client> client) {
    {
        const std::lock_guard lock(m_mutex);
        m_clients.push_back(std::move(client));
        if (m_clients.size() > 1) {
            return;
        }
    }
    asio::post(m_reader, [this] { writeAll(); });
}

void PendingWrites::writeAll() {
    std::vector<std::weak_ptr<Client>> clients;
    {
        const std::lock_guard lock(m_mutex);
        clients.swap(m_clients);
    }
    for (const std::weak_ptr<Client>& each : clients) {
        if (const auto client = each.lock()) {
            client->writeNext();
        }
    }
}

}  // namespace host
