#pragma once

#include <asio/thread_pool.hpp>

#include "host/framework/WorkerPool.h"

namespace host {

/// Stands apart from `WorkerPool.h` so that only the sources which need Asio read its headers.
struct WorkerPool::Threads {
    explicit Threads(unsigned count) : pool(count) {}

    asio::thread_pool pool;
};

}  // namespace host
