#include "bench/load/ObserverCrowd.h"

#include <sys/epoll.h>
#include <sys/eventfd.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <exception>

#include "bench/load/SystemCall.h"

namespace bench {

ObserverCrowd::~ObserverCrowd() {
    if (m_thread.joinable()) {
        ::eventfd_write(m_end.get(), 1);
        m_thread.join();
    }
}

void ObserverCrowd::add(ObserverSocket::Kind kind, std::size_t count, const std::filesystem::path& data,
                        bool reads) {
    for (std::size_t number = 0; number < count; ++number) {
        (reads ? m_readers : m_stopped).push_back(std::make_unique<ObserverSocket>(kind, data));
    }
}

void ObserverCrowd::start() {
    m_poll = host::FileDescriptor(checked(::epoll_create1(EPOLL_CLOEXEC), "epoll_create1"));
    m_end = host::FileDescriptor(checked(::eventfd(0, EFD_CLOEXEC), "eventfd"));
    epoll_event event{};
    event.events = EPOLLIN;
    checked(::epoll_ctl(m_poll.get(), EPOLL_CTL_ADD, m_end.get(), &event), "epoll_ctl");
    for (const std::unique_ptr<ObserverSocket>& observer : m_readers) {
        event.data.ptr = observer.get();
        checked(::epoll_ctl(m_poll.get(), EPOLL_CTL_ADD, observer->descriptor(), &event), "epoll_ctl");
    }
    m_thread = std::thread([this] { discard(); });
}

void ObserverCrowd::discard() {
    std::array<epoll_event, 64> events{};
    for (;;) {
        const int count = ::epoll_wait(m_poll.get(), events.data(), static_cast<int>(events.size()), -1);
        for (int number = 0; number < count; ++number) {
            auto* const observer =
                static_cast<ObserverSocket*>(events[static_cast<std::size_t>(number)].data.ptr);
            if (observer == nullptr) {
                return;
            }
            try {
                m_bytes += observer->receive().size();
            } catch (const std::exception&) {
                ++m_disconnected;
                ::epoll_ctl(m_poll.get(), EPOLL_CTL_DEL, observer->descriptor(), nullptr);
            }
        }
    }
}

}  // namespace bench
