#include "apps/calljournal/output/ProgressText.h"

#include <unistd.h>

#include <iostream>
#include <utility>

#include "host/presentation/PlainText.h"

namespace calljournal {
namespace {

constexpr std::chrono::seconds kFirst{1};
constexpr std::chrono::milliseconds kPause{200};
constexpr const char* kClearLine = "\r\x1b[K";

}  // namespace

ProgressText::ProgressText()
    : m_onTerminal(::isatty(STDERR_FILENO) != 0), m_next(std::chrono::steady_clock::now() + kFirst) {}

ProgressText::~ProgressText() {
    clear();
}

void ProgressText::show(const std::string& what, std::size_t done, std::size_t total) {
    const auto now = std::chrono::steady_clock::now();
    if (!m_onTerminal || now < m_next) {
        return;
    }
    m_next = now + kPause;
    m_shown = true;
    std::cerr << kClearLine << host::printable(what);
    if (total > 0) {
        std::cerr << " (" << done * 100 / total << " %)";
    }
    std::cerr << std::flush;
}

void ProgressText::clear() {
    if (std::exchange(m_shown, false)) {
        std::cerr << kClearLine << std::flush;
    }
}

}  // namespace calljournal
