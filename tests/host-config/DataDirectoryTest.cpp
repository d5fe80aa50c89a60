#include "host/config/DataDirectory.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <fstream>
#include <optional>
#include <string>

#include "host/config/ConfigurationError.h"
#include "tests/support/TemporaryDirectory.h"

namespace {

/// Sets an environment variable, or takes it away, for as long as it lives.
class Variable {
public:
    Variable(const char* name, const char* value) : m_name(name) {
        if (const char* const before = std::getenv(name)) {
            m_before = before;
        }
        set(value);
    }
    ~Variable() { set(m_before ? m_before->c_str() : nullptr); }
    Variable(const Variable&) = delete;
    Variable& operator=(const Variable&) = delete;

private:
    void set(const char* value) const {
        if (value == nullptr) {
            ::unsetenv(m_name);
        } else {
            ::setenv(m_name, value, 1);
        }
    }

    const char* const m_name;
    std::optional<std::string> m_before;
};

TEST(DataDirectory, FollowsTheEnvironment) {
    const struct {
        const char* state;
        const char* home;
        const char* directory;
    } cases[] = {
        {"/state", "/home/ada", "/state/calljournal"},
        {nullptr, "/home/ada", "/home/ada/.local/state/calljournal"},
        {"", "/home/ada", "/home/ada/.local/state/calljournal"},
        {"relative", "/home/ada", "/home/ada/.local/state/calljournal"},
    };
    for (const auto& each : cases) {
        const Variable state("XDG_STATE_HOME", each.state);
        const Variable home("HOME", each.home);
        EXPECT_EQ(host::defaultDataDirectory(), each.directory);
    }
}

TEST(DataDirectory, IsAskedForWhereThereIsNoHome) {
    const Variable state("XDG_STATE_HOME", nullptr);
    const Variable home("HOME", nullptr);
    EXPECT_THROW(static_cast<void>(host::defaultDataDirectory()), host::ConfigurationError);
}

TEST(DataDirectory, IsMadeForItsOwnerOnly) {
    const TemporaryDirectory temporary;
    const auto directory = temporary.path() / "state" / "calljournal";
    host::makeDataDirectory(directory);
    host::makeDataDirectory(directory);
    struct stat status {};
    ASSERT_EQ(::stat(directory.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0700U);
}

TEST(DataDirectory, IsRefusedWhereAFileStands) {
    const TemporaryDirectory temporary;
    const auto file = temporary.path() / "file";
    std::ofstream(file) << "x";
    EXPECT_THROW(host::makeDataDirectory(file), host::ConfigurationError);
    EXPECT_THROW(host::makeDataDirectory(file / "below"), host::ConfigurationError);
}

}  // namespace
