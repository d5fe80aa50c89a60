#include "host/log/Log.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <regex>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "host/log/LogText.h"
#include "platform/logging/Logging.h"
#include "tests/support/TemporaryDirectory.h"

namespace {

using namespace std::string_literals;
using host::escapedLogText;
using host::kMaxLogText;
using host::Log;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::SizeIs;

TEST(LogText, EscapesTextThatCouldBreakOrForgeALine) {
    const std::pair<std::string, const char*> rows[] = {
        {"calling 4711", "calling 4711"},
        {"", ""},
        {"Ada\n2026-11-21T05:22:05.123Z error forged", R"(Ada\n2026-11-21T05:22:05.123Z error forged)"},
        {"a\rb\tc\x1b[2Jgone", R"(a\rb\tc\x1b[2Jgone)"},
        {"a\0b\x7f"s, R"(a\x00b\x7f)"},
        {"a\u009bb", R"(a\xc2\x9bb)"},
        {"a\u2028b\u202ec", R"(a\xe2\x80\xa8b\xe2\x80\xaec)"},
        {"M\u00fcller \U0001f600", "M\u00fcller \U0001f600"},
        {"M\xc3", R"(M\xc3)"},
        {"\xc0\xaf", R"(\xc0\xaf)"},
        {"line breaks at the end \n\r\n", "line breaks at the end "},
        {"\n\n", ""},
    };
    for (const auto& [text, line] : rows) {
        EXPECT_EQ(escapedLogText(text), line);
    }
}

TEST(LogText, CutsALongTextAndAppendsTheMissingSize) {
    const std::string longest(kMaxLogText, 'x');
    EXPECT_EQ(escapedLogText(longest), longest);
    EXPECT_EQ(escapedLogText(longest + "yyy"), longest + " ... (3 bytes more)");
    const std::string withinACharacter = escapedLogText(longest.substr(1) + "\u00fc");
    EXPECT_EQ(withinACharacter.substr(kMaxLogText - 1), R"(\xc3 ... (1 bytes more))");
}

class LogToFile : public testing::Test {
public:
    ~LogToFile() override { Log::configure("info", ""); }

protected:
    LogToFile() { configure("info"); }

    void configure(const char* level) { Log::configure(level, file()); }
    [[nodiscard]] std::string file() const { return m_directory.path() / "journal.log"; }
    [[nodiscard]] std::vector<std::string> lines() const {
        std::ifstream stream(file());
        std::vector<std::string> read;
        for (std::string line; std::getline(stream, line);) {
            read.push_back(line);
        }
        return read;
    }

private:
    TemporaryDirectory m_directory;
};

TEST_F(LogToFile, WritesTimeLevelComponentTextAndSourceInOneLine) {
    logAppUni("Journal Service", "./src/JournalService", 3, 120, "%s has %d calls", "Ada\nforged", 7);
    ASSERT_THAT(lines(), SizeIs(1));
    const std::regex time(R"(\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3}Z)");
    EXPECT_EQ(std::regex_replace(lines().front(), time, "TIME"),
              R"(TIME warning [Journal Service] Ada\nforged has 7 calls (./src/JournalService:120))");
}

TEST_F(LogToFile, WritesTheLevelsOfTheWord) {
    const std::pair<const char*, int> words[] = {
        {"error", 2}, {"warning", 3}, {"info", 5}, {"debug", 6}, {"trace", 9}};
    for (const auto& [word, highest] : words) {
        SCOPED_TRACE(word);
        std::filesystem::remove(file());
        configure(word);
        for (int level = 2; level <= 9; ++level) {
            EXPECT_EQ(loggingOnAppUni("any", level), level <= highest);
            logAppUni("any", "f", level, 1, "level %d", level);
        }
        ASSERT_THAT(lines(), SizeIs(highest - 1));
        EXPECT_THAT(lines().back(), HasSubstr("level " + std::to_string(highest)));
    }
}

TEST_F(LogToFile, DoesNotFormatForALevelThatIsOff) {
    // Formatting would read from this address and crash.
    // NOLINTNEXTLINE(performance-no-int-to-ptr): an address that cannot be read.
    const char* const trap = reinterpret_cast<const char*>(std::uintptr_t{1});
    logAppUni("any", "f", 6, 1, "%s", trap);
    EXPECT_THAT(lines(), SizeIs(0));
}

TEST_F(LogToFile, WritesTextsOfAnyLength) {
    for (const std::size_t length : {511U, 512U, 513U, 60000U}) {
        logAppUni("any", "f", 5, 1, "%s|", std::string(length, 'x').c_str());
        EXPECT_THAT(lines().back(), HasSubstr("] " + std::string(length, 'x') + "| (f:1)"));
    }
}

TEST_F(LogToFile, AppendsToAFileAndCreatesItWithMode0600) {
    logAppUni("any", "f", 5, 1, "first");
    configure("info");
    logAppUni("any", "f", 5, 2, "second");
    EXPECT_THAT(lines(), ElementsAre(EndsWith("first (f:1)"), EndsWith("second (f:2)")));
    struct stat status {};
    ASSERT_EQ(::stat(file().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0600U);
}

TEST_F(LogToFile, StaysUnchangedIfTheConfigurationFails) {
    configure("error");
    EXPECT_THROW(Log::configure("loud", file()), std::runtime_error);
    EXPECT_THROW(Log::configure("debug", file() + "/below-a-file"), std::runtime_error);
    EXPECT_FALSE(loggingOnAppUni("any", 3));
    logAppUni("any", "f", 2, 1, "still here");
    EXPECT_THAT(lines(), ElementsAre(HasSubstr("still here")));
}

TEST_F(LogToFile, SeparatesTheTextsOfManyThreadsWhileItIsConfigured) {
    constexpr int kThreads = 4;
    constexpr int kLines = 200;
    std::vector<std::thread> threads;
    for (int thread = 0; thread < kThreads; ++thread) {
        threads.emplace_back([thread] {
            for (int line = 0; line < kLines; ++line) {
                logAppUni("any", "f", 5, line, "thread %d", thread);
            }
        });
    }
    for (int times = 0; times < 20; ++times) {
        configure(times % 2 == 0 ? "info" : "debug");
    }
    for (std::thread& each : threads) {
        each.join();
    }
    const std::vector<std::string> all = lines();
    EXPECT_THAT(all, SizeIs(kThreads * kLines));
    for (const std::string& line : all) {
        EXPECT_TRUE(std::regex_match(line, std::regex(R"(\S+Z info \[any\] thread \d \(f:\d+\))"))) << line;
    }
}

}  // namespace
