#include "host/config/Configuration.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>

#include "tests/support/TemporaryDirectory.h"

namespace {

using host::Configuration;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Pair;
using namespace std::string_literals;

Configuration parsed(const std::string& toml) {
    return Configuration::parse(toml, "test.toml");
}

TEST(Configuration, TakesEveryValueOfAFile) {
    const Configuration read = parsed(R"(
[line]
device = "3001"
bluetooth = true
[[line.shared]]
device = "3002"
[[line.shared]]
device = "3003"
log-missed-calls = false
[switch]
host = "pbx.example.org"
port = 1040
edition = "ed6"
session = "application-session"
send-filters = false
tls = false
reconnect-max-s = 60
[api]
listen = "[::1]:9090"
auth = "none"
[data]
store = "sqlite"
[management]
"software-type" = "Norlith SIP"
anything-else = "x = y"
[digits]
region = "GB"
feature-access-codes = ["*61", "#72"]
[log]
level = "debug"
file = "/var/log/calljournal.log"
)");
    Configuration expected;
    expected.lines = {{"3001", {{"3002", true}, {"3003", false}}, true}};
    expected.callSwitch = {"pbx.example.org",       1040, "ed6", "application-session", false, false,
                           std::chrono::seconds(60)};
    expected.api = {{"::1", 9090}, Configuration::Auth::eNone};
    expected.management = {{"anything-else", "x = y"},
                           {"mac-addr", "00:00:00:00:00:00"},
                           {"software-type", "Norlith SIP"},
                           {"system-identifier", "0"}};
    expected.digits = {"GB", {"*61", "#72"}};
    expected.log = {"debug", "/var/log/calljournal.log"};
    EXPECT_EQ(read, expected);
}

TEST(Configuration, LeavesWhatAFileDoesNotNameAtItsDefault) {
    EXPECT_EQ(parsed(""), Configuration());
    Configuration expected;
    expected.callSwitch.port = 1;
    EXPECT_EQ(parsed("[switch]\nport = 1\n[log]\n"), expected);
}

TEST(Configuration, TakesALineInSingleAndInDoubleBrackets) {
    const std::string shared = "[[line.shared]]\ndevice = \"7\"\n";
    EXPECT_EQ(parsed("[[line]]\ndevice = \"3001\"\n" + shared),
              parsed("[line]\ndevice = \"3001\"\n" + shared));
    EXPECT_EQ(parsed("[[line]]\ndevice = \"3001\"\n" + shared).lines.front().shared.front().device, "7");
}

// The page promises that its example is the default.
TEST(Configuration, HasTheDefaultsThatItsPageShows) {
    std::ifstream stream(CONFIGURATION_PAGE);
    const std::string page{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    const std::size_t begin = page.find("```toml\n") + 8;
    ASSERT_NE(begin, std::string::npos);
    const std::string example = page.substr(begin, page.find("```", begin) - begin);
    ASSERT_THAT(example, HasSubstr("feature-access-codes"));
    EXPECT_EQ(parsed(example), Configuration());
}

TEST(Configuration, IsLoadedFromAFile) {
    const TemporaryDirectory directory;
    const auto file = directory.path() / "calljournal.toml";
    std::ofstream(file) << "[line]\ndevice = \"42\"\n";
    EXPECT_EQ(Configuration::load(file).lines.front().device, "42");

    for (const auto& wrong : {directory.path(), directory.path() / "absent.toml"}) {
        try {
            static_cast<void>(Configuration::load(wrong));
            ADD_FAILURE() << wrong;
        } catch (const host::ConfigurationError& error) {
            EXPECT_THAT(error.what(), HasSubstr(wrong.string() + ": "));
        }
    }
}

TEST(Configuration, KeepsWhatTheCommandLineSetsApartFromTheFile) {
    Configuration configuration;
    configuration.set("system-identifier=2");
    configuration.set("voice-mail-e164=+49=30");
    configuration.set("call-log-control=");
    configuration.set("system-identifier=1");
    EXPECT_THAT(configuration.managementOverrides,
                ElementsAre(Pair("call-log-control", ""), Pair("system-identifier", "1"),
                            Pair("voice-mail-e164", "+49=30")));
    EXPECT_EQ(configuration.management, Configuration().management);

    for (const char* const wrong : {"", "=", "=2", "system-identifier", "a key=1"}) {
        EXPECT_THROW(configuration.set(wrong), host::ConfigurationError) << wrong;
    }
}

}  // namespace
