#include "apps/calljournal/server/ServiceLoop.h"

#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <optional>

#include "host/systemd/ServiceManager.h"

namespace calljournal {
namespace {

bool isTerminalClosed() {
    for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream) {
        struct stat kind {};
        pollfd state{stream, 0, 0};
        if (::fstat(stream, &kind) == 0 && S_ISCHR(kind.st_mode) && ::poll(&state, 1, 0) > 0 &&
            (state.revents & POLLHUP) != 0) {
            return true;
        }
    }
    return false;
}

}  // namespace

void runService(const StopSignal& signals, const std::function<void()>& reload,
                const std::function<void()>& checkAlive) {
    const auto interval = host::ServiceManager::watchdogInterval();
    std::optional<std::chrono::milliseconds> pause;
    if (interval) {
        pause = std::chrono::duration_cast<std::chrono::milliseconds>(*interval / 2);
        checkAlive();
    }
    for (;;) {
        const std::optional<int> signal = signals.next(pause);
        if (!signal) {
            checkAlive();
        } else if (*signal == SIGHUP && !isTerminalClosed()) {
            host::ServiceManager::reloading();
            reload();
            host::ServiceManager::ready("runs");
        } else {
            host::ServiceManager::stopping();
            return;
        }
    }
}

}  // namespace calljournal
