#include "host/framework/Strand.h"

#include <asio/post.hpp>
#include <atomic>
#include <condition_variable>
#include <deque>
#include <future>
#include <mutex>
#include <thread>
#include <utility>

#include "host/framework/WorkerPool.h"
#include "host/framework/WorkerThreads.h"
#include "platform/logging/LogExceptions.h"

namespace host {

struct Strand::Core : std::enable_shared_from_this<Core> {
    explicit Core(WorkerPool& pool) : threads(pool.threads()) {}

    bool add(Work work, bool wakes) {
        {
            const std::lock_guard lock(mutex);
            if (closed) {
                return false;
            }
            waiting.push_back(std::move(work));
            if (!wakes || std::exchange(taken, true)) {
                return true;
            }
        }
        schedule();
        return true;
    }

    /// Requires: this call has set `taken`.
    void schedule() {
        asio::post(threads.pool(), [core = shared_from_this()] {
            const WorkerThreads::Busy busy(core->threads);
            core->run();
        });
    }

    void runHere() {
        {
            const std::lock_guard lock(mutex);
            if (waiting.empty() || std::exchange(taken, true)) {
                return;
            }
        }
        run();
    }

    /// Runs what waits now; what comes meanwhile is the turn of another thread, after the work of other
    /// strands. Requires: this call has set `taken`.
    void run() {
        std::deque<Work> now;
        {
            const std::lock_guard lock(mutex);
            now.swap(waiting);
        }
        runner = std::this_thread::get_id();
        for (Work& each : now) {
            logExceptions({.component = "Framework", .sourceFile = __FILE_NAME__, .line = __LINE__},
                          "a piece of work", each);
            each = nullptr;  // destroys the captured objects before a drain returns
        }
        runner = std::thread::id();
        {
            const std::lock_guard lock(mutex);
            taken = !waiting.empty();
            if (!taken) {
                idle.notify_all();
                return;
            }
        }
        schedule();
    }

    void drain() {
        std::unique_lock lock(mutex);
        idle.wait(lock, [this] { return waiting.empty() && !taken; });
    }

    WorkerThreads& threads;
    /// The thread on which work runs now.
    std::atomic<std::thread::id> runner{};

    std::mutex mutex;
    std::condition_variable idle;
    // Guarded by mutex.
    std::deque<Work> waiting;
    /// A thread runs the work that waits, or is going to.
    bool taken = false;
    bool closed = false;
};

Strand::Strand(WorkerPool& pool) : m_core(std::make_shared<Core>(pool)) {}

Strand::~Strand() {
    close();
}

bool Strand::post(Work work) {
    return m_core->add(std::move(work), true);
}

bool Strand::runAndWait(const Work& work) {
    if (isCurrent()) {
        work();
        return true;
    }
    // Shared, because the waiting thread may return while the task still ends.
    const auto task = std::make_shared<std::packaged_task<void()>>(work);
    std::future<void> done = task->get_future();
    if (!post([task] { (*task)(); })) {
        return false;
    }
    done.get();
    return true;
}

void Strand::drain() {
    m_core->drain();
}

void Strand::close() {
    {
        const std::lock_guard lock(m_core->mutex);
        m_core->closed = true;
    }
    m_core->drain();
}

bool Strand::isCurrent() const {
    return m_core->runner == std::this_thread::get_id();
}

std::function<bool(Strand::Work)> Strand::weakPoster() const {
    return [weak = std::weak_ptr<Core>(m_core)](Work work) {
        const std::shared_ptr<Core> core = weak.lock();
        return core && core->add(std::move(work), true);
    };
}

Strand::Helper Strand::helper() const {
    const std::weak_ptr<Core> weak(m_core);
    return {.queue =
                [weak](Work work) {
                    const std::shared_ptr<Core> core = weak.lock();
                    return core && core->add(std::move(work), false);
                },
            .run =
                [weak] {
                    if (const std::shared_ptr<Core> core = weak.lock()) {
                        core->runHere();
                    }
                }};
}

}  // namespace host
