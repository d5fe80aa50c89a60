#include "host/framework/AsioAlarmClock.h"

#include <asio/steady_timer.hpp>
#include <utility>

#include "host/framework/WorkerPool.h"
#include "host/framework/WorkerThreads.h"

namespace host {
namespace {

class AsioAlarm final : public Alarm {
public:
    AsioAlarm(WorkerPool& pool, std::chrono::milliseconds delay, std::function<void()> ring)
        : m_timer(pool.threads().pool(), delay) {
        m_timer.async_wait([call = std::move(ring)](const asio::error_code& error) {
            if (!error) {
                call();
            }
        });
    }

private:
    asio::steady_timer m_timer;
};

}  // namespace

std::unique_ptr<Alarm> AsioAlarmClock::after(std::chrono::milliseconds delay, std::function<void()> ring) {
    return std::make_unique<AsioAlarm>(m_pool, delay, std::move(ring));
}

}  // namespace host
