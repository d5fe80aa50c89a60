#include "host/config/DataDirectory.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>

#include "host/config/ConfigurationError.h"
#include "host/config/Endpoint.h"
#include "tests/support/Table.h"
#include "tests/support/TemporaryDirectory.h"

namespace {

// Rows: the two variables of the environment, "-" for one that is not set; the directory.
TEST(DataDirectory, IsChosenByTheEnvironment) {
    for (const auto& row : journaltest::table(3, R"(
        /state   | /home/ada | /state/calljournal
        -        | /home/ada | /home/ada/.local/state/calljournal
                 | /home/ada | /home/ada/.local/state/calljournal
        relative | /home/ada | /home/ada/.local/state/calljournal
        -        | -         | refused
    )")) {
        for (const auto& [name, value] : {std::pair("XDG_STATE_HOME", row[0]), std::pair("HOME", row[1])}) {
            static_cast<void>(value == "-" ? ::unsetenv(name) : ::setenv(name, value.c_str(), 1));
        }
        std::string chosen = "refused";
        try {
            chosen = host::defaultDataDirectory();
        } catch (const host::ConfigurationError&) {}
        EXPECT_EQ(chosen, row[2]);
    }
}

TEST(DataDirectory, IsRefusedIfEveryUserMayWriteInIt) {
    const TemporaryDirectory temporary;
    EXPECT_NO_THROW(host::makeDataDirectory(temporary.path()));
    std::filesystem::permissions(temporary.path(), std::filesystem::perms::all);
    EXPECT_THROW(host::makeDataDirectory(temporary.path()), host::ConfigurationError);
}

TEST(DataDirectory, IsRefusedIfAFileIsInItsPlace) {
    const TemporaryDirectory temporary;
    const auto file = temporary.path() / "file";
    std::ofstream(file) << "x";
    EXPECT_THROW(host::makeDataDirectory(file), host::ConfigurationError);
    EXPECT_THROW(host::makeDataDirectory(file / "below"), host::ConfigurationError);
}

TEST(Endpoint, IsAHostAndAPort) {
    for (const std::string text : {"127.0.0.1:8080", "localhost:0", "0.0.0.0:65535", "[::1]:4242"}) {
        EXPECT_EQ(host::parseEndpoint(text).value_or(host::Endpoint()).text(), text);
    }
    EXPECT_EQ(host::parseEndpoint("[::1]:4242"), (host::Endpoint{"::1", 4242}));
    for (const std::string& text : journaltest::split(
             ",:,:80,127.0.0.1,127.0.0.1:,127.0.0.1:65536,127.0.0.1:-1,127.0.0.1:+1,127.0.0.1:80x,"
             "127.0.0.1: 80,a b:80,::1:80,[::1],[]:80,[::1:80,http://127.0.0.1:80,[[::1]]:80",
             ',')) {
        EXPECT_FALSE(host::parseEndpoint(text)) << text;
    }
}

}  // namespace
