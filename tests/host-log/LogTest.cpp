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

#include "platform/logging/Logging.h"
#include "tests/support/TemporaryDirectory.h"

namespace {

using host::Log;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::SizeIs;

class LogToFile : public testing::Test {
protected:
    void TearDown() override { Log::configure("info", ""); }

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

TEST_F(LogToFile, WritesTimeLevelComponentTextAndPlaceInOneLine) {
    configure("info");
    logAppUni("Journal Service", "./src/JournalService", 3, 120, "%s has %d calls", "missed", 7);
    ASSERT_THAT(lines(), SizeIs(1));
    EXPECT_TRUE(std::regex_match(
        lines().front(),
        std::regex(
            R"(\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3}Z warning \[Journal Service\] missed has 7 calls \(\./src/JournalService:120\))")))
        << lines().front();
}

TEST_F(LogToFile, KeepsACallersNameInItsLine) {
    configure("info");
    logAppUni("Journal Service", "f", 5, 1, "surname[%s]", "Ada\nforged\r\x1b[1m");
    EXPECT_THAT(lines(), ElementsAre(HasSubstr(R"(surname[Ada\nforged\r\x1b[1m])")));
}

TEST_F(LogToFile, WritesTheLevelsThatTheWordNames) {
    const struct {
        const char* word;
        int highest;
    } cases[] = {{"error", 2}, {"warning", 3}, {"info", 5}, {"debug", 6}, {"trace", 9}};
    for (const auto& each : cases) {
        std::filesystem::remove(file());
        configure(each.word);
        for (int level = 2; level <= 9; ++level) {
            EXPECT_EQ(loggingOnAppUni("any", level), level <= each.highest) << each.word << ' ' << level;
            logAppUni("any", "f", level, 1, "level %d", level);
        }
        ASSERT_EQ(lines().size(), static_cast<std::size_t>(each.highest - 1)) << each.word;
        EXPECT_THAT(lines().back(), HasSubstr("level " + std::to_string(each.highest))) << each.word;
    }
}

TEST_F(LogToFile, DoesNotLookAtTheArgumentsOfALevelThatIsOff) {
    configure("info");
    // Formatting would read from this address.
    // NOLINTNEXTLINE(performance-no-int-to-ptr): it must not be one that can be read.
    const char* const trap = reinterpret_cast<const char*>(std::uintptr_t{1});
    logAppUni("any", "f", 6, 1, "%s", trap);
    EXPECT_THAT(lines(), SizeIs(0));
}

TEST_F(LogToFile, WritesTextsOfAnyLength) {
    configure("info");
    for (const std::size_t length : {511U, 512U, 513U, 60000U}) {
        logAppUni("any", "f", 5, 1, "%s|", std::string(length, 'x').c_str());
        EXPECT_THAT(lines().back(), HasSubstr("] " + std::string(length, 'x') + "| (f:1)"));
    }
}

TEST_F(LogToFile, AddsToAFileThatIsThereAndMakesANewOnePrivate) {
    configure("info");
    logAppUni("any", "f", 5, 1, "first");
    configure("info");
    logAppUni("any", "f", 5, 2, "second");
    EXPECT_THAT(lines(), ElementsAre(EndsWith("first (f:1)"), EndsWith("second (f:2)")));
    struct stat status {};
    ASSERT_EQ(::stat(file().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0600U);
}

TEST_F(LogToFile, StaysAsItWasWhenItCannotBeConfigured) {
    configure("error");
    EXPECT_THROW(Log::configure("loud", file()), std::runtime_error);
    EXPECT_THROW(Log::configure("debug", file() + "/below-a-file"), std::runtime_error);
    EXPECT_FALSE(loggingOnAppUni("any", 3));
    logAppUni("any", "f", 2, 1, "still here");
    EXPECT_THAT(lines(), ElementsAre(HasSubstr("still here")));
}

TEST_F(LogToFile, KeepsTheLinesOfManyThreadsApartWhileItIsConfigured) {
    constexpr int kThreads = 4;
    constexpr int kLines = 200;
    configure("info");
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
    const std::regex shape(R"(\S+Z info \[any\] thread \d \(f:\d+\))");
    const std::vector<std::string> all = lines();
    EXPECT_EQ(all.size(), static_cast<std::size_t>(kThreads) * kLines);
    for (const std::string& line : all) {
        EXPECT_TRUE(std::regex_match(line, shape)) << line;
    }
}

}  // namespace
