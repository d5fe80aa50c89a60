#include "apps/calljournal/server/StopSignal.h"

#include <poll.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <system_error>

namespace calljournal {
namespace {

sigset_t stopSignals() noexcept {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGHUP);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGTERM);
    return signals;
}

}  // namespace

StopSignal::StopSignal() {
    const sigset_t signals = stopSignals();
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    m_descriptor = host::FileDescriptor(::signalfd(-1, &signals, SFD_CLOEXEC));
    if (!m_descriptor.isOpen()) {
        throw std::system_error(errno, std::generic_category(), "cannot wait for signals");
    }
}

bool StopSignal::wait(int other) const {
    std::array<pollfd, 2> waits{{{m_descriptor.get(), POLLIN, 0}, {other, POLLIN, 0}}};
    while (::poll(waits.data(), waits.size(), -1) < 0 && errno == EINTR) {}
    return waits[0].revents != 0;
}

std::optional<int> StopSignal::next(std::optional<std::chrono::milliseconds> limit) const {
    pollfd wait{m_descriptor.get(), POLLIN, 0};
    const int milliseconds = limit ? static_cast<int>(limit->count()) : -1;
    int ready = 0;
    while ((ready = ::poll(&wait, 1, milliseconds)) < 0 && errno == EINTR) {}
    signalfd_siginfo signal{};
    if (ready <= 0 || ::read(m_descriptor.get(), &signal, sizeof signal) != sizeof signal) {
        return std::nullopt;
    }
    return static_cast<int>(signal.ssi_signo);
}

bool StopSignal::hasCome() const {
    pollfd signal{m_descriptor.get(), POLLIN, 0};
    return ::poll(&signal, 1, 0) > 0;
}

void StopSignal::restoreInChild() noexcept {
    const sigset_t signals = stopSignals();
    pthread_sigmask(SIG_UNBLOCK, &signals, nullptr);
    std::signal(SIGPIPE, SIG_DFL);
    std::signal(SIGXFSZ, SIG_DFL);
}

}  // namespace calljournal
