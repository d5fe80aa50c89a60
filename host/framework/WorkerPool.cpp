#include "host/framework/WorkerPool.h"

#include <algorithm>
#include <thread>

#include "host/framework/WorkerPoolThreads.h"

namespace host {

WorkerPool::WorkerPool() : WorkerPool(std::max(2U, std::thread::hardware_concurrency())) {}

WorkerPool::WorkerPool(unsigned threads) : m_threads(std::make_unique<Threads>(threads)) {}

WorkerPool::~WorkerPool() = default;

}  // namespace host
