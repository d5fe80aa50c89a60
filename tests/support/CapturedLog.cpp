#include "tests/support/CapturedLog.h"

#include <algorithm>
#include <atomic>
#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <mutex>

#include <gtest/gtest.h>

#include "platform/logging/Logging.h"
#include "tests/support/FakeHardware.h"

namespace journaltest {
namespace {

constexpr int kEverything = 6;

std::atomic<int> g_level{kEverything};

struct Kept {
    std::mutex mutex;
    std::vector<CapturedLog::Line> lines;
};

// Never destroyed: what a test leaves behind may log while the program ends.
Kept& kept() {
    static Kept* const theOne = new Kept;
    return *theOne;
}

/// Gives each test an empty log with every level on, and plain hardware. Naming the hardware here also brings its
/// definition into every program that has the log, where a library that is loaded at run time may look for both.
class ResetBeforeEachTest final : public testing::EmptyTestEventListener {
    void OnTestStart(const testing::TestInfo& /*test*/) override {
        CapturedLog::reset();
        FakeHardware::setSubPlatformVariant(0);
    }
};

[[maybe_unused]] const bool g_listening = [] {
    testing::UnitTest::GetInstance()->listeners().Append(new ResetBeforeEachTest);
    return true;
}();

__attribute__((format(printf, 1, 0))) std::string printed(const char* format, std::va_list arguments) {
    std::va_list again;
    va_copy(again, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, again);
    va_end(again);
    std::string text(length < 0 ? 0 : static_cast<std::size_t>(length) + 1, '\0');
    if (!text.empty()) {
        std::vsnprintf(text.data(), text.size(), format, arguments);
        text.pop_back();
    }
    return text;
}

}  // namespace

void CapturedLog::setLevel(int level) noexcept {
    g_level.store(level, std::memory_order_relaxed);
}

void CapturedLog::reset() {
    setLevel(kEverything);
    const std::lock_guard lock(kept().mutex);
    kept().lines.clear();
}

std::vector<CapturedLog::Line> CapturedLog::lines() {
    const std::lock_guard lock(kept().mutex);
    return kept().lines;
}

std::vector<std::string> CapturedLog::lines(std::string_view component) {
    std::vector<std::string> texts;
    for (const Line& line : lines()) {
        if (line.component == component) {
            texts.push_back(line.text);
        }
    }
    return texts;
}

bool CapturedLog::contains(std::string_view text) {
    return count(text) > 0;
}

int CapturedLog::count(std::string_view text) {
    const std::vector<Line> all = lines();
    return static_cast<int>(std::count_if(all.begin(), all.end(), [text](const Line& line) {
        return line.text.find(text) != std::string::npos;
    }));
}

std::string CapturedLog::dump() {
    std::string text;
    for (const Line& line : lines()) {
        text += line.component + " [" + std::to_string(line.level) + "] " + line.text + "\n";
    }
    return text;
}

}  // namespace journaltest

bool loggingOnAppUni(const char* /*component*/, int level) noexcept {
    return level <= journaltest::g_level.load(std::memory_order_relaxed);
}

void logAppUni(const char* component, const char* sourceFile, int level, int line, const char* format,
               ...) noexcept {
    if (!loggingOnAppUni(component, level)) {
        return;
    }
    std::va_list arguments;
    va_start(arguments, format);
    std::string text = journaltest::printed(format, arguments);
    va_end(arguments);
    const std::lock_guard lock(journaltest::kept().mutex);
    journaltest::kept().lines.push_back({component, sourceFile, level, line, std::move(text)});
}
