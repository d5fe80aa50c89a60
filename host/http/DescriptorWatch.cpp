#include "host/http/DescriptorWatch.h"

#include <fcntl.h>

#include <cerrno>
#include <utility>

#include "host/framework/FileDescriptor.h"
#include "platform/logging/Logging.h"

namespace host {
namespace {

bool areDescriptorsExhausted() {
    const FileDescriptor probe(::open("/", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    return !probe.isOpen() && (errno == EMFILE || errno == ENFILE);
}

}  // namespace

DescriptorWatch::DescriptorWatch(asio::io_context& loop, std::function<void()> returned)
    : m_timer(loop), m_returned(std::move(returned)) {}

void DescriptorWatch::start(Clock::duration interval) {
    m_timer.expires_after(interval);
    m_timer.async_wait([this, interval](const asio::error_code& error) {
        if (!error) {
            start(interval);
            check();
        }
    });
}

void DescriptorWatch::stop() {
    m_timer.cancel();
}

void DescriptorWatch::check() {
    const bool before = std::exchange(m_exhausted, areDescriptorsExhausted());
    if (m_exhausted && !before) {
        logAppUni("HTTP", __FILE_NAME__, 2, __LINE__,
                  "no file descriptor is free: new clients wait; raise the limit (ulimit -n)");
    } else if (before && !m_exhausted) {
        logAppUni("HTTP", __FILE_NAME__, 4, __LINE__, "file descriptors are free again");
        m_returned();
    }
}

}  // namespace host
