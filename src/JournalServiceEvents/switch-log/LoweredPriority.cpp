#include "src/JournalServiceEvents/switch-log/LoweredPriority.h"

#include <sys/resource.h>

#include <algorithm>
#include <cerrno>

#include "src/JournalService/base/Log.h"

namespace journal {

namespace {

constexpr int kLeastNice = -20;
constexpr int kHighestRequest = 20;
constexpr int kStep = 5;
// The last value that is raised by a step; from the next one on the highest value is set.
constexpr int kLastToStep = 13;
// These calls take this id for the calling thread.
constexpr id_t kCaller = 0;

std::optional<int> niceOfCaller() {
    errno = 0;
    const int value = ::getpriority(PRIO_PROCESS, kCaller);  // -1 is a value, too
    return errno == 0 ? std::optional(value) : std::nullopt;
}

bool setNiceOfCaller(int value) {
    return ::setpriority(PRIO_PROCESS, kCaller, value) == 0;
}

int leastAllowedByLimit() {
    rlimit limit{};
    if (::getrlimit(RLIMIT_NICE, &limit) != 0) {
        return kHighestRequest;
    }
    // The limit counts from the other end: 40 stands for -20, 1 for 19.
    constexpr rlim_t kWholeRange = 40;
    return kHighestRequest - static_cast<int>(std::min(limit.rlim_cur, kWholeRange));
}

}  // namespace

const LoweredPriority::Kernel& LoweredPriority::callingThread() {
    static const Kernel kernel{niceOfCaller, setNiceOfCaller, leastAllowedByLimit};
    return kernel;
}

LoweredPriority::LoweredPriority(const char* operation, const Kernel& kernel)
    : m_operation(operation), m_kernel(kernel) {
    const std::optional<int> former = m_kernel.nice();
    if (!former) {
        LOG_EVENTS(3, "%s():the priority cannot be told", m_operation);
        return;
    }
    LOG_EVENTS(5, "%s():priority before setpriority: %d", m_operation, *former);
    if (canRestore(*former)) {
        m_former = former;
        m_kernel.setNice(*former <= kLastToStep ? *former + kStep : kHighestRequest);
    }
    LOG_EVENTS(5, "%s():priority after setpriority: %d", m_operation, niceNow());
}

LoweredPriority::~LoweredPriority() {
    if (m_former && !m_kernel.setNice(*m_former)) {
        LOG_EVENTS(3, "%s():priority %d was not given back", m_operation, *m_former);
    }
    LOG_EVENTS(5, "%s():priority after reset priority: %d", m_operation, niceNow());
}

bool LoweredPriority::canRestore(int former) const {
    if (former >= m_kernel.leastAllowed()) {
        return true;
    }
    // There is no value below the least one to try: the kernel would treat the request as no change.
    return former > kLeastNice && m_kernel.setNice(former - 1);
}

int LoweredPriority::niceNow() const {
    return m_kernel.nice().value_or(-1);
}

}  // namespace journal
