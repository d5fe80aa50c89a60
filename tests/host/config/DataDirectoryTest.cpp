#include "host/config/DataDirectory.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>

#include "host/config/ConfigurationError.h"
#include "host/config/Endpoint.h"
#include "tests/support/TemporaryDirectory.h"

namespace {

void setVariable(const char* name, const char* value) {
    static_cast<void>(value == nullptr ? ::unsetenv(name) : ::setenv(name, value, 1));
}

TEST(DataDirectory, IsChosenByTheEnvironment) {
    const struct {
        const char* state;
        const char* home;
        const char* directory;
    } cases[] = {
        {"/state", "/home/ada", "/state/calljournal"},
        {nullptr, "/home/ada", "/home/ada/.local/state/calljournal"},
        {"", "/home/ada", "/home/ada/.local/state/calljournal"},
        {"relative", "/home/ada", "/home/ada/.local/state/calljournal"},
        {nullptr, nullptr, nullptr},
    };
    for (const auto& each : cases) {
        setVariable("XDG_STATE_HOME", each.state);
        setVariable("HOME", each.home);
        if (each.directory != nullptr) {
            EXPECT_EQ(host::defaultDataDirectory(), each.directory);
        } else {
            EXPECT_THROW(static_cast<void>(host::defaultDataDirectory()), host::ConfigurationError);
        }
    }
}

TEST(DataDirectory, IsRefusedIfAFileIsInItsPlace) {
    const TemporaryDirectory temporary;
    const auto file = temporary.path() / "file";
    std::ofstream(file) << "x";
    EXPECT_THROW(host::makeDataDirectory(file), host::ConfigurationError);
    EXPECT_THROW(host::makeDataDirectory(file / "below"), host::ConfigurationError);
}

TEST(Endpoint, IsAHostAndAPort) {
    for (const char* const text : {"127.0.0.1:8080", "localhost:0", "0.0.0.0:65535", "[::1]:4242"}) {
        const auto read = host::parseEndpoint(text);
        ASSERT_TRUE(read) << text;
        EXPECT_EQ(read->text(), text);
    }
    EXPECT_EQ(host::parseEndpoint("[::1]:4242"), (host::Endpoint{"::1", 4242}));
    for (const char* const text :
         {"", ":", ":80", "127.0.0.1", "127.0.0.1:", "127.0.0.1:65536", "127.0.0.1:-1", "127.0.0.1:+1",
          "127.0.0.1:80x", "127.0.0.1: 80", "a b:80", "::1:80", "[::1]", "[]:80", "[::1:80",
          "http://127.0.0.1:80", "[[::1]]:80"}) {
        EXPECT_FALSE(host::parseEndpoint(text)) << text;
    }
}

}  // namespace
