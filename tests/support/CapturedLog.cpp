#include "tests/support/CapturedLog.h"

#include <atomic>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <mutex>

#include <gtest/gtest.h>

#include "platform/logging/Logging.h"
#include "tests/support/FakeHardware.h"

namespace journaltest {
namespace {

struct Line {
    std::string component;
    int level = 0;
    std::string text;
};

std::atomic<bool> g_on{true};
std::mutex g_mutex;
// Never destroyed: objects that outlive a test may log while the program ends. Guarded by g_mutex.
std::vector<Line>& g_lines = *new std::vector<Line>;

std::vector<Line> allLines() {
    const std::lock_guard lock(g_mutex);
    return g_lines;
}

/// Gives each test an empty log, and plain hardware. Naming the hardware here also brings its definition into
/// every program that has the log, where a library that is loaded at run time may look for both.
class ResetBeforeEachTest final : public testing::EmptyTestEventListener {
    void OnTestStart(const testing::TestInfo& /*test*/) override {
        CapturedLog::reset();
        setHardwareVariant(0);
    }
};

[[maybe_unused]] const bool g_listening = [] {
    testing::UnitTest::GetInstance()->listeners().Append(new ResetBeforeEachTest);
    return true;
}();

}  // namespace

void CapturedLog::switchOff() noexcept {
    g_on = false;
}

void CapturedLog::reset() {
    g_on = true;
    const std::lock_guard lock(g_mutex);
    g_lines.clear();
}

std::vector<std::string> CapturedLog::lines(std::string_view component) {
    std::vector<std::string> texts;
    for (const Line& line : allLines()) {
        if (line.component == component) {
            texts.push_back(line.text);
        }
    }
    return texts;
}

int CapturedLog::count(std::string_view text) {
    int found = 0;
    for (const Line& line : allLines()) {
        found += line.text.find(text) != std::string::npos ? 1 : 0;
    }
    return found;
}

std::string CapturedLog::dump() {
    std::string text;
    for (const Line& line : allLines()) {
        text += line.component + " [" + std::to_string(line.level) + "] " + line.text + "\n";
    }
    return text;
}

}  // namespace journaltest

bool loggingOnAppUni(const char* /*component*/, int /*level*/) noexcept {
    return journaltest::g_on.load(std::memory_order_relaxed);
}

void logAppUni(const char* component, const char* /*sourceFile*/, int level, int /*line*/, const char* format,
               ...) noexcept {
    if (!loggingOnAppUni(component, level)) {
        return;
    }
    char* text = nullptr;
    std::va_list arguments;
    va_start(arguments, format);
    const int length = vasprintf(&text, format, arguments);
    va_end(arguments);
    if (length >= 0) {
        const std::unique_ptr<char, decltype(&std::free)> owner(text, &std::free);
        const std::lock_guard lock(journaltest::g_mutex);
        journaltest::g_lines.push_back({component, level, text});
    }
}
