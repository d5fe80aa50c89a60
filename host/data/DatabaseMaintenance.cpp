#include "host/data/DatabaseMaintenance.h"

#include <new>
#include <thread>

#include "host/database/Database.h"

namespace host {
namespace {

constexpr std::chrono::seconds kBetween{1};
constexpr std::chrono::milliseconds kBetweenAtEnd{100};

}  // namespace

void DatabaseMaintenance::start() {
    m_strand.post([this] {
        m_database.checkpoint();  // what a kill has left in the log; its connection stays open
        maintain();
    });
    m_database.setLogListener([this, post = m_strand.weakPoster()] {
        if (m_checkpointIsDue.exchange(true)) {
            return;
        }
        try {
            post([this] {
                m_checkpointIsDue = false;
                m_database.checkpoint();
            });
        } catch (const std::bad_alloc&) {
            m_checkpointIsDue = false;  // the next commit calls again
        }
    });
}

void DatabaseMaintenance::stop() {
    m_database.setLogListener(nullptr);
    m_strand.post([this] { m_next.reset(); });
    m_strand.close();
}

void DatabaseMaintenance::maintain() {
    static_cast<void>(m_database.maintain());
    try {
        m_next = m_timers.schedule(kBetween,
                                   [this, post = m_strand.weakPoster()] { post([this] { maintain(); }); });
    } catch (const std::bad_alloc&) {
        std::this_thread::sleep_for(kBetween);
        m_strand.post([this] { maintain(); });
    }
}

std::size_t DatabaseMaintenance::storeRest(std::chrono::milliseconds time) {
    const auto end = std::chrono::steady_clock::now() + time;
    while (!m_database.maintain() && std::chrono::steady_clock::now() < end) {
        std::this_thread::sleep_for(kBetweenAtEnd);
    }
    return m_database.keptCount();
}

}  // namespace host
