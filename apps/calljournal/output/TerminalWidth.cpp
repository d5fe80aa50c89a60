#include "apps/calljournal/output/TerminalWidth.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdlib>

namespace calljournal {
namespace {

constexpr std::size_t kUsualWidth = 80;

}  // namespace

std::size_t terminalWidth() {
    if (const char* const columns = std::getenv("COLUMNS"); columns != nullptr) {
        if (const long count = std::strtol(columns, nullptr, 10); count > 0) {
            return static_cast<std::size_t>(count);
        }
    }
    winsize size{};
    if (::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0) {
        return size.ws_col;
    }
    return kUsualWidth;
}

}  // namespace calljournal
