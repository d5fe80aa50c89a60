#include "host/framework/WorkerPool.h"

#include <algorithm>
#include <thread>

#include "host/framework/WorkerThreads.h"

namespace host {

WorkerPool::WorkerPool() : WorkerPool(std::max(2U, std::thread::hardware_concurrency())) {}

WorkerPool::WorkerPool(unsigned threads) : WorkerPool(threads, threads) {}

WorkerPool::WorkerPool(unsigned threads, unsigned most)
    : m_threads(std::make_unique<WorkerThreads>(threads, most)) {}

WorkerPool::~WorkerPool() = default;

}  // namespace host
