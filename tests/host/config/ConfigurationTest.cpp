#include "host/config/ConfigurationReader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <fstream>
#include <iterator>
#include <string>

#include "tests/support/Table.h"
#include "tests/support/TemporaryDirectory.h"

namespace {

using host::Configuration;
using journaltest::table;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Pair;
using testing::StartsWith;

Configuration parsed(const std::string& toml) {
    return host::readConfiguration(toml, "t.toml");
}

/// Returns the error message for a configuration text, in which ";" means a line feed.
std::string refusalOf(std::string toml) {
    std::replace(toml.begin(), toml.end(), ';', '\n');
    try {
        static_cast<void>(parsed(toml));
    } catch (const host::ConfigurationError& error) {
        return error.what();
    }
    return "accepted";
}

TEST(Configuration, ReadsEveryValueOfAFile) {
    const Configuration read = parsed(R"(
        line = { device = "3001", bluetooth = true, shared = [
            { device = "3002" }, { device = "3003", log-missed-calls = false }] }
        api = { listen = "[::1]:9090", auth = "none", public-url = "https://phone.example/a/", allowed-origins = [
            "https://Board.example:443", "http://[::1]:81"] }
        data = { store = "sqlite" }
        management = { "software-type" = "Norlith SIP", anything-else = "x = y" }
        digits = { region = "GB", feature-access-codes = ["*61", "#72"], outside-line = "0", dial = "international" }
        log = { level = "debug", library-level = "info", file = "/var/log/calljournal.log", private = true }
        [switch]
        host = "pbx.example.org"
        port = 1040
        edition = "ed6"
        session = "application-session"
        send-filters = false
        tls = true
        tls-ca = "ca.pem"
        tls-name = "pbx"
        tls-certificate = "own.pem"
        tls-key = "own.key"
        reconnect-max-s = 60
        call-max-hours = 3
    )");
    Configuration expected;
    expected.lines = {{.device = "3001", .shared = {{"3002", true}, {"3003", false}}, .bluetooth = true}};
    expected.callSwitch = {.host = "pbx.example.org",
                           .port = 1040,
                           .edition = "ed6",
                           .session = "application-session",
                           .sendFilters = false,
                           .tls = true,
                           .trust = {"ca.pem", "pbx", {"own.pem", "own.key"}},
                           .reconnectMax = std::chrono::seconds(60),
                           .callMax = std::chrono::hours(3)};
    expected.api = {{"::1", 9090},
                    Configuration::Auth::eNone,
                    {},
                    "https://phone.example/a/",
                    {"https://board.example", "http://[::1]:81"}};
    EXPECT_EQ(parsed("[api]\ntls-certificate = \"phone.pem\"\ntls-key = \"phone.key\"\n").api.tls,
              (host::CertificateFiles{"phone.pem", "phone.key"}));
    expected.management = {{"anything-else", "x = y"},
                           {"mac-addr", "00:00:00:00:00:00"},
                           {"software-type", "Norlith SIP"},
                           {"system-identifier", "0"}};
    expected.digits = {"GB", {"*61", "#72"}, "0", true};
    expected.log = {"debug", "info", "/var/log/calljournal.log", true};
    EXPECT_EQ(read, expected);
}

// The page promises that its example has the defaults.
TEST(Configuration, HasTheDefaultsOfItsPage) {
    std::ifstream stream(CONFIGURATION_PAGE);
    const std::string page{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    const std::size_t begin = page.find("```toml\n") + 8;
    const std::string example = page.substr(begin, page.find("```", begin) - begin);
    ASSERT_THAT(example, HasSubstr("feature-access-codes"));
    Configuration expected;
    EXPECT_EQ(parsed(example), expected);
    EXPECT_EQ(parsed(""), expected);
    expected.callSwitch.port = 1;
    EXPECT_EQ(parsed("[switch]\nport = 1\n[log]\n"), expected);
}

TEST(Configuration, ReadsALineInSingleAndInDoubleBrackets) {
    const std::string line = "[line]\ndevice = \"3001\"\n[[line.shared]]\ndevice = \"7\"\n";
    EXPECT_EQ(parsed(line).lines.front().shared.front().device, "7");
    EXPECT_EQ(parsed('[' + line.substr(0, 6) + ']' + line.substr(6)), parsed(line));
}

TEST(Configuration, IsRefusedIfItsFileCannotBeRead) {
    const TemporaryDirectory directory;
    for (const auto& wrong : {directory.path(), directory.path() / "absent.toml"}) {
        EXPECT_THROW(static_cast<void>(host::loadConfiguration(wrong)), host::ConfigurationError) << wrong;
    }
}

// As a shell passes the output of a command that has ended.
TEST(Configuration, IsReadFromAPipeThatItsWriterHasClosed) {
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe(ends.data()), 0);
    ASSERT_EQ(write(ends[1], "[api]\nauth = 'none'\n", 20), 20);
    close(ends[1]);
    EXPECT_EQ(host::loadConfiguration("/proc/self/fd/" + std::to_string(ends[0])).api.auth,
              Configuration::Auth::eNone);
    close(ends[0]);
}

TEST(Configuration, SeparatesTheCommandLineFromTheFile) {
    Configuration configuration;
    for (const char* const set : {"system-identifier=2", "voice-mail-e164=+49=30", "system-identifier="}) {
        configuration.set(set);
    }
    EXPECT_THAT(configuration.managementOverrides,
                ElementsAre(Pair("system-identifier", ""), Pair("voice-mail-e164", "+49=30")));
    EXPECT_EQ(configuration.management, Configuration().management);
    for (const char* const wrong : {"", "=", "=2", "system-identifier", "a key=1"}) {
        EXPECT_THROW(configuration.set(wrong), host::ConfigurationError) << wrong;
    }
}

// Each row: the text; text line and key at the start of the message; what it must contain.
TEST(Configuration, IsRefusedWithFileLineKeyAndReason) {
    for (const auto& row : table(3, R"(
        [line];device = "1";device = "2"             | 3:                     | device
        ;[swich];port = 1                            | 2: swich:              | valid keys: api, data
        [switch];host = "a";prot = 1                 | 3: switch.prot:        | valid keys: call-max-hours, edition, host
        [line];device = "1";number = "2"             | 3: line.number:        | valid keys: bluetooth, device
        [[line.shared]];device = "1";log = true      | 3: line.shared.log:    | log-missed-calls
        ;switch = "pbx"                              | 2: switch:             | [switch]
        [[api]];auth = "none"                        | 1: api:                | [api]
        line = 1                                     | 1: line:               | [[line]]
        [[line]];device = "1";[[line]];device = "1"  | 4: line.device:        | another line
        [line];device = "1/2"                        | 2: line.device:        | no /
        [line];switch = "b"                          | 1: line:               | none of the switches
        [[switch]];name = "a";[[switch]];port = 1    | 3: switch.name:        | several switches
        [[switch]];name = "a";[[switch]];name = "a"  | 4: switch.name:        | another switch
        lines-file = "none.csv"                      | 1: lines-file:         | cannot be read
        [line];device = 2001                         | 2: line.device:        | quotation marks
        [line];[[line.shared]];log-missed-calls = true | 2: line.shared.device: | must not be empty
        [[line.shared]];device = "7";[[line.shared]];device = "7" | 4: line.shared.device: | "7" is named
        [[line.shared]];device = "2001"              | 2: line.shared.device: | named already
        [switch];port = 0                            | 2: switch.port:        | from 1 to 65535
        [switch];port = 4242.0                       | 2: switch.port:        | whole number
        [switch];edition = "ed7"                     | 2: switch.edition:     | "ed3", "ed4", "ed5"
        [switch];session = "Auto"                    | 2: switch.session:     | application-session
        [switch];tls-ca = "ca.pem"                   | 2: switch.tls-ca:      | tls must be true
        [switch];tls = true;tls-key = "own.key"      | 3: switch.tls-key:     | needs the other one
        [api];tls-certificate = "phone.pem"          | 2: api.tls-certificate: | needs the other one
        [switch];reconnect-max-s = 0                 | 2: switch.reconnect-max-s: | from 1 to 3600
        [switch];call-max-hours = 0                  | 2: switch.call-max-hours: | from 1 to 8760
        [api];listen = "127.0.0.1"                   | 2: api.listen:         | ADDR:PORT
        [api];public-url = "phone.example"           | 2: api.public-url:     | URL of the page
        [api];allowed-origins = ["https://a/b"]      | 2: api.allowed-origins: | must be origins
        [api];auth = "password"                      | 2: api.auth:           | "token", "none"
        [data];store = "postgresql://db"             | 2: data.store:         | must be "sqlite"
        [management];"system-identifier" = 2         | 2: management.system-identifier: | quotation marks
        [management];;"software-type" = "norlith sip" | 3: management.software-type: | Norlith Qorvex or Norlith SIP
        [management];"software-type" = ""            | 2: management.software-type: | Norlith Qorvex or Norlith SIP
        [management];"disable-access-calllog" = "3"  | 2: management.disable-access-calllog: | 0, 1 or 2
        [management.system];identifier = "2"         | 1: management.system:  | quotation marks
        [digits];region = "UK"                       | 2: digits.region:      | is "GB"
        [digits];region = "de"                       | 2: digits.region:      | two capital letters
        [digits];feature-access-codes = "*61"        | 2: digits.feature-access-codes: | a list of texts
        [digits];feature-access-codes = ["*61",; 62] | 3: digits.feature-access-codes: | quotation marks
        [digits];outside-line = "zero"               | 2: digits.outside-line: | digits
        [[webhook]];url = "ftp://crm.example"        | 2: webhook.url:        | URL of a receiver
        [[webhook]];url = "http://a:70000/"          | 2: webhook.url:        | URL of a receiver
        [[webhook]];url = "http://a/#b"              | 2: webhook.url:        | URL of a receiver
        [[webhook]];url = "http://a";events = []     | 3: webhook.events:     | one event or more
        [[webhook]];url = "http://a";events = ["call.file"] | 3: webhook.events: | "call.file" is no event; there are call.filed
        [[webhook]];url = "http://u:p@a/";events = ["call.filed"] | 1: webhook.secret-file: | must not be empty
        [digits];feature-access-codes = [""]         | 2: digits.feature-access-codes: | digits
    )")) {
        const std::string refusal = refusalOf(row[0]);
        EXPECT_THAT(refusal, StartsWith("t.toml:" + row[1])) << row[0];
        EXPECT_THAT(refusal, HasSubstr(row[2])) << row[0];
    }
    EXPECT_THAT(refusalOf("[line];device = \"\xff\""), StartsWith("t.toml:2: "));
}

}  // namespace
