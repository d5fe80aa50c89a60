#include "host/framework/LineContext.h"

#include <chrono>
#include <cstdint>
#include <limits>
#include <utility>

#include "host/framework/Strand.h"
#include "host/framework/TimerSource.h"
#include "platform/framework/Executable.h"
#include "platform/logging/Logging.h"

namespace host {

class LineContext::Timers : public std::enable_shared_from_this<Timers> {
public:
    Timers(std::function<bool(Strand::Work)> post, TimerSource& timerSource)
        : m_post(std::move(post)), m_timerSource(timerSource) {}

    int create(Executable& handler, int milliseconds) {
        const std::lock_guard lock(m_mutex);
        if (milliseconds < 0 || m_lastId == std::numeric_limits<int>::max()) {
            logAppUni("Framework", __FILE_NAME__, 2, __LINE__, "cannot create a timer of %d ms",
                      milliseconds);
            return -1;
        }
        m_timers.emplace(++m_lastId, Timer{.handler = &handler,
                                           .duration = std::chrono::milliseconds(milliseconds),
                                           .generation = 0,
                                           .expiry = nullptr});
        return m_lastId;
    }

    bool start(int id, bool afresh) {
        std::unique_ptr<ScheduledExpiry> old;
        const std::lock_guard lock(m_mutex);
        Timer* timer = find(id);
        if (timer != nullptr && (afresh || !timer->expiry)) {
            old = disarm(*timer);
            timer->expiry = m_timerSource.schedule(timer->duration, expiryPoster(id, timer->generation));
        }
        return timer != nullptr;
    }

    bool stop(int id) {
        std::unique_ptr<ScheduledExpiry> old;
        const std::lock_guard lock(m_mutex);
        Timer* timer = find(id);
        if (timer != nullptr) {
            old = disarm(*timer);
        }
        return timer != nullptr;
    }

    bool remove(int id) {
        const std::lock_guard lock(m_mutex);
        return m_timers.erase(id) > 0;
    }

    void removeAllOf(const Executable& handler) {
        const std::lock_guard lock(m_mutex);
        std::erase_if(m_timers, [&handler](const auto& entry) { return entry.second.handler == &handler; });
    }

    void removeAll() {
        const std::lock_guard lock(m_mutex);
        m_timers.clear();
    }

    bool isRunning(int id) {
        const std::lock_guard lock(m_mutex);
        const Timer* timer = find(id);
        return timer != nullptr && timer->expiry;
    }

private:
    struct Timer {
        Executable* handler;
        std::chrono::milliseconds duration;
        /// Changes whenever a posted expiry becomes invalid.
        std::uint64_t generation;
        /// Set while the timer runs.
        std::unique_ptr<ScheduledExpiry> expiry;
    };

    Timer* find(int id) {
        const auto found = m_timers.find(id);
        return found == m_timers.end() ? nullptr : &found->second;
    }

    static std::unique_ptr<ScheduledExpiry> disarm(Timer& timer) {
        ++timer.generation;
        return std::move(timer.expiry);
    }

    std::function<void()> expiryPoster(int id, std::uint64_t generation) {
        return [weak = weak_from_this(), id, generation] {
            if (const std::shared_ptr<Timers> self = weak.lock()) {
                self->m_post([weak, id, generation] {
                    if (const std::shared_ptr<Timers> timers = weak.lock()) {
                        timers->expire(id, generation);
                    }
                });
            }
        };
    }

    /// Call from the strand only, so that code on the strand cannot stop the timer in the middle of this.
    void expire(int id, std::uint64_t generation) {
        Executable* handler = nullptr;
        {
            std::unique_ptr<ScheduledExpiry> old;
            const std::lock_guard lock(m_mutex);
            Timer* timer = find(id);
            if (timer == nullptr || !timer->expiry || timer->generation != generation) {
                return;
            }
            old = disarm(*timer);
            handler = timer->handler;
        }
        handler->timerEvent(id);
    }

    // Constant after construction.
    const std::function<bool(Strand::Work)> m_post;
    TimerSource& m_timerSource;

    std::mutex m_mutex;
    // Guarded by m_mutex.
    std::map<int, Timer> m_timers;
    int m_lastId = 0;
};

LineContext::LineContext(Strand& strand, TimerSource& timerSource)
    : m_timers(std::make_shared<Timers>(strand.weakPoster(), timerSource)) {}

LineContext::~LineContext() {
    m_timers->removeAll();
}

void LineContext::registerService(const std::string& name, Executable& service) {
    const std::lock_guard lock(m_servicesMutex);
    m_services[name] = &service;
}

void LineContext::removeService(const std::string& name) {
    const std::lock_guard lock(m_servicesMutex);
    m_services.erase(name);
}

void LineContext::deleteTimersOf(const Executable& handler) {
    m_timers->removeAllOf(handler);
}

Executable* LineContext::findService(const std::string& name) {
    const std::lock_guard lock(m_servicesMutex);
    const auto found = m_services.find(name);
    return found == m_services.end() ? nullptr : found->second;
}

int LineContext::createTimer(Executable& handler, int milliseconds) {
    return m_timers->create(handler, milliseconds);
}

bool LineContext::startTimer(int id) {
    return m_timers->start(id, false);
}

bool LineContext::stopTimer(int id) {
    return m_timers->stop(id);
}

bool LineContext::restartTimer(int id) {
    return m_timers->start(id, true);
}

bool LineContext::deleteTimer(int id) {
    return m_timers->remove(id);
}

bool LineContext::isTimerRunning(int id) {
    return m_timers->isRunning(id);
}

}  // namespace host
