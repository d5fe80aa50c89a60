#include "host/database/ReadConnections.h"

#include <utility>

#include "host/database/DatabaseConnection.h"
#include "host/database/DatabaseFile.h"

namespace host {

ReadConnections::ReadConnections(std::filesystem::path file, const DatabaseFile& place,
                                 std::chrono::milliseconds busyTime)
    : m_file(std::move(file)), m_place(place), m_busyTime(busyTime) {}

ReadConnections::~ReadConnections() = default;

void ReadConnections::run(const std::function<void(DatabaseConnection&)>& work) {
    const unsigned generation = m_generation;
    std::unique_ptr<DatabaseConnection> reader = take();
    work(*reader);
    const std::lock_guard lock(m_mutex);
    if (generation == m_generation) {
        m_idle.push_back(std::move(reader));
    }
}

void ReadConnections::renew() {
    const std::lock_guard lock(m_mutex);
    ++m_generation;
    m_idle.clear();
}

std::unique_ptr<DatabaseConnection> ReadConnections::take() {
    {
        const std::lock_guard lock(m_mutex);
        if (!m_idle.empty()) {
            std::unique_ptr<DatabaseConnection> reader = std::move(m_idle.back());
            m_idle.pop_back();
            return reader;
        }
    }
    m_place.requireInPlace();
    auto reader = std::make_unique<DatabaseConnection>(m_file, m_busyTime, DatabaseConnection::ReadOnly());
    m_place.requireInPlace();
    return reader;
}

}  // namespace host
