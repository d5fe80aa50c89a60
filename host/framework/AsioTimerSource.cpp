#include "host/framework/AsioTimerSource.h"

#include <asio/steady_timer.hpp>
#include <utility>

#include "host/framework/WorkerPool.h"
#include "host/framework/WorkerThreads.h"

namespace host {
namespace {

class AsioExpiry final : public ScheduledExpiry {
public:
    AsioExpiry(WorkerPool& pool, std::chrono::milliseconds delay, std::function<void()> onExpiry)
        : m_timer(pool.threads().pool(), delay) {
        m_timer.async_wait([call = std::move(onExpiry)](const asio::error_code& error) {
            if (!error) {
                call();
            }
        });
    }

private:
    asio::steady_timer m_timer;
};

}  // namespace

std::unique_ptr<ScheduledExpiry> AsioTimerSource::schedule(std::chrono::milliseconds delay,
                                                           std::function<void()> onExpiry) {
    return std::make_unique<AsioExpiry>(m_pool, delay, std::move(onExpiry));
}

}  // namespace host
