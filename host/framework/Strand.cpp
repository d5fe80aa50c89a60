#include "host/framework/Strand.h"

#include <asio/post.hpp>
#include <asio/strand.hpp>
#include <condition_variable>
#include <cstddef>
#include <future>
#include <mutex>
#include <utility>

#include "host/framework/WorkerPool.h"
#include "host/framework/WorkerThreads.h"
#include "platform/logging/LogExceptions.h"

namespace host {

struct Strand::Core : std::enable_shared_from_this<Core> {
    explicit Core(WorkerPool& pool)
        : threads(pool.threads()), executor(asio::make_strand(threads.pool().get_executor())) {}

    bool post(Work work) {
        {
            const std::lock_guard lock(mutex);
            if (closed) {
                return false;
            }
            ++pending;
        }
        asio::post(executor, [core = shared_from_this(), run = std::move(work)]() mutable {
            {
                const WorkerThreads::Busy busy(core->threads);
                logExceptions({.component = "Framework", .sourceFile = __FILE_NAME__, .line = __LINE__},
                              "a piece of work", run);
                run = nullptr;  // destroys the captured objects before a drain returns
            }
            core->finishOne();
        });
        return true;
    }

    void finishOne() {
        const std::lock_guard lock(mutex);
        if (--pending == 0) {
            idle.notify_all();
        }
    }

    void drain() {
        std::unique_lock lock(mutex);
        idle.wait(lock, [this] { return pending == 0; });
    }

    WorkerThreads& threads;
    asio::strand<asio::thread_pool::executor_type> executor;

    std::mutex mutex;
    std::condition_variable idle;
    // Guarded by mutex.
    std::size_t pending = 0;
    bool closed = false;
};

Strand::Strand(WorkerPool& pool) : m_core(std::make_shared<Core>(pool)) {}

Strand::~Strand() {
    close();
}

bool Strand::post(Work work) {
    return m_core->post(std::move(work));
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
    return m_core->executor.running_in_this_thread();
}

std::function<bool(Strand::Work)> Strand::weakPoster() const {
    return [weak = std::weak_ptr<Core>(m_core)](Work work) {
        const std::shared_ptr<Core> core = weak.lock();
        return core && core->post(std::move(work));
    };
}

}  // namespace host
