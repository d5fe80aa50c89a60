#include "host/log/Log.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "host/log/LogText.h"
#include "host/log/LogWriter.h"
#include "platform/logging/Logging.h"
#include "tests/support/TemporaryDirectory.h"

namespace {

using namespace std::string_literals;
using host::escapedLogText;
using host::kMaxLogText;
using host::Log;
using host::LogWriter;
using testing::ContainsRegex;
using testing::Each;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::SizeIs;

TEST(LogText, EscapesTextThatCouldBreakOrForgeALine) {
    EXPECT_EQ(escapedLogText(""), "");
    EXPECT_EQ(
        escapedLogText("Ada\n2026-11-21T05:22:05.123Z error \r\t\x1b[2J a\0b\x7f\u009b at the end \n\r\n"s),
        R"(Ada\n2026-11-21T05:22:05.123Z error \r\t\x1b[2J a\x00b\x7f\xc2\x9b at the end )");
    EXPECT_EQ(escapedLogText("a\u2028b\u202ec M\u00fcller \U0001f600 \xc0\xaf M\xc3"),
              "a\\xe2\\x80\\xa8b\\xe2\\x80\\xaec M\u00fcller \U0001f600 \\xc0\\xaf M\\xc3");
}

TEST(LogText, CutsALongTextAndAppendsTheMissingSize) {
    const std::string longest(kMaxLogText, 'x');
    EXPECT_EQ(escapedLogText(longest), longest);
    EXPECT_EQ(escapedLogText(longest + "yyy"), longest + " ... (3 bytes more)");
    const std::string withinACharacter = escapedLogText(longest.substr(1) + "\u00fc");
    EXPECT_EQ(withinACharacter.substr(kMaxLogText - 1), R"(\xc3 ... (1 bytes more))");
}

constexpr std::chrono::seconds kTestTimeout{30};

class LogToFile : public testing::Test {
public:
    ~LogToFile() override { Log::configure("info", ""); }

protected:
    LogToFile() { configure("info"); }

    void configure(const char* level) { Log::configure(level, file()); }
    [[nodiscard]] std::string file() const { return m_directory.path() / "journal.log"; }
    [[nodiscard]] std::vector<std::string> lines() const {
        EXPECT_TRUE(Log::flush(kTestTimeout));
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
    // The buffer of the first attempt has 512 bytes.
    for (const std::size_t length : {511U, 512U, 513U, 16000U}) {
        logAppUni("any", "f", 5, 1, "%s|", std::string(length, 'x').c_str());
        EXPECT_EQ(lines().back().substr(25), "info [any] " + std::string(length, 'x') + "| (f:1)");
    }
    EXPECT_THAT(lines().front(), ContainsRegex("^[0-9]{4}-[0-9-]{5}T[0-9:]{8}\\.[0-9]{3}Z warning"));
    EXPECT_EQ(lines().front().substr(25),
              R"(warning [Journal Service] Ada\nforged has 7 calls (./src/JournalService:120))");
}

TEST_F(LogToFile, WritesTheLevelsOfTheWordAndFormatsNoOther) {
    // Formatting would read from this address and crash.
    // NOLINTNEXTLINE(performance-no-int-to-ptr): an address that cannot be read.
    const char* const trap = reinterpret_cast<const char*>(std::uintptr_t{1});
    const std::pair<const char*, int> words[] = {
        {"error", 2}, {"warning", 3}, {"info", 5}, {"debug", 6}, {"trace", 9}};
    for (const auto& [word, highest] : words) {
        SCOPED_TRACE(word);
        std::filesystem::remove(file());
        configure(word);
        for (int level = 2; level <= 9; ++level) {
            EXPECT_EQ(loggingOnAppUni("any", level), level <= highest);
            logAppUni("any", "f", level, 1, "level %d %s", level, level <= highest ? "" : trap);
        }
        ASSERT_THAT(lines(), SizeIs(highest - 1));
        EXPECT_THAT(lines().back(), HasSubstr("level " + std::to_string(highest)));
    }
}

TEST_F(LogToFile, HasALevelForTheLibraryAndMasksThePartiesInItsLines) {
    Log::configure({.level = "info", .libraryLevel = "debug", .file = file()});
    EXPECT_FALSE(loggingOnAppUni("any", 6));
    const std::string name = "Ann M\u00fcller";
    const std::string number = "+49891234567";
    logAppUni("Journal Service Events", "f", 6, 1, "%s: {%s} %zu%% %02d of %s, line %s", "name",
              number.c_str(), std::size_t{70000}, 7, name.c_str(), "2001");
    logAppUni("Journal Service", "f", 3, 2, "refused %s: %s", number.c_str(), name.c_str());
    logAppUni("Journal", "f", 4, 3, "%s", number.c_str());
    EXPECT_THAT(lines(), ElementsAre(HasSubstr("name: {+**67} 70000% 07 of *** ***, line 2001 (f:1)"),
                                     HasSubstr("refused +**67: " + name), HasSubstr(number)));
}

TEST_F(LogToFile, MasksTheMessagesOfSwitchesAndTelephones) {
    const std::string message = "<deviceID>+49891234567</deviceID>";
    for (const char* const component : {"CSTA Link", "CSTA Switch", "SIP Gateway"}) {
        std::filesystem::remove(file());
        Log::configure({.level = "debug", .libraryLevel = "debug", .file = file()});
        logAppUni(component, "f", 6, 1, "from it: %s", message.c_str());
        EXPECT_THAT(lines(), ElementsAre(HasSubstr("from it: <***>+**67</***>"))) << component;
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
    std::vector<std::jthread> threads;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([thread] {
            for (int line = 0; line < 200; ++line) {
                logAppUni("any", "f", 5, line, "thread %d", thread);
            }
        });
    }
    for (int times = 0; times < 20; ++times) {
        configure(times % 2 == 0 ? "info" : "debug");
    }
    threads.clear();  // waits for them
    EXPECT_THAT(lines(), SizeIs(800));
    EXPECT_THAT(lines(), Each(ContainsRegex(R"(^[^ ]+Z info \[any\] thread [0-3] \(f:[0-9]+\)$)")));
}

constexpr std::size_t kTimeLength = std::string_view("2026-11-21T05:22:05.123Z ").size();

TEST(LogToPipe, DropsTheOldestLinesWhileNoReaderTakesThemAndReportsThemInTheirPlace) {
    constexpr int kLines = 20000;  // more than the pipe and the queue hold
    const std::string filling(1000, 'x');
    std::array<int, 2> ends{};
    ASSERT_EQ(::pipe(ends.data()), 0);
    LogWriter writer("/proc/self/fd/" + std::to_string(ends[1]));
    const std::uint64_t droppedBefore = LogWriter::droppedLines();
    for (int line = 0; line < kLines; ++line) {
        writer.add(5, std::to_string(line) + filling);
    }
    EXPECT_FALSE(writer.flush(std::chrono::milliseconds(10)));
    const std::uint64_t dropped = LogWriter::droppedLines() - droppedBefore;
    ASSERT_GT(dropped, kLines / 2);

    const std::string last = std::to_string(kLines - 1) + filling + "\n";
    std::string all;
    std::array<char, 65536> part{};
    while (!all.ends_with(last)) {
        const ssize_t size = ::read(ends[0], part.data(), part.size());
        ASSERT_GT(size, 0);
        all.append(part.data(), static_cast<std::size_t>(size));
    }
    std::istringstream lines(all);
    std::uint64_t next = 0;
    std::uint64_t missing = 0;
    for (std::string line; std::getline(lines, line);) {
        if (line.find("warning") == kTimeLength) {
            std::istringstream report(line.substr(kTimeLength + std::string_view("warning [Log] ").size()));
            std::uint64_t here = 0;
            EXPECT_TRUE(report >> here) << line;
            missing += here;
            next += here;
        } else {
            ASSERT_EQ(line.substr(kTimeLength), "info " + std::to_string(next++) + filling);
        }
    }
    EXPECT_EQ(next, kLines);
    EXPECT_EQ(missing, dropped);
    EXPECT_TRUE(writer.flush(kTestTimeout));
    ::close(ends[0]);
    ::close(ends[1]);
}

TEST(LogToFullDevice, CountsTheLinesThatCannotBeWritten) {
    const std::uint64_t droppedBefore = LogWriter::droppedLines();
    LogWriter writer("/dev/full");
    writer.add(5, "first");
    writer.add(5, "second");
    EXPECT_TRUE(writer.flush(kTestTimeout));
    EXPECT_EQ(LogWriter::droppedLines() - droppedBefore, 2U);
}

}  // namespace
