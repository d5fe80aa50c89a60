#include "host/config/DataDirectory.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstdlib>
#include <system_error>

#include "host/config/ConfigurationError.h"

namespace host {
namespace {

std::filesystem::path absolutePathIn(const char* variable) {
    const char* const value = std::getenv(variable);
    std::filesystem::path path(value == nullptr ? "" : value);
    return path.is_absolute() ? path : std::filesystem::path();
}

[[noreturn]] void refuse(const std::filesystem::path& directory, const std::error_code& error) {
    throw ConfigurationError("cannot make the data directory " + directory.string() + ": " + error.message() +
                             "; choose another one with --data DIR");
}

/// Where every user may write, another one may replace the database and the token.
void refuseOpenToAll(const std::filesystem::path& directory) {
    struct stat status {};
    if (::stat(directory.c_str(), &status) == 0 && (status.st_mode & S_IWOTH) != 0) {
        throw ConfigurationError("every user may write in the data directory " + directory.string() +
                                 "; close it with chmod o-w, or choose another one with --data DIR");
    }
}

}  // namespace

std::filesystem::path defaultDataDirectory() {
    if (const auto state = absolutePathIn("XDG_STATE_HOME"); !state.empty()) {
        return state / "calljournal";
    }
    if (const auto home = absolutePathIn("HOME"); !home.empty()) {
        return home / ".local" / "state" / "calljournal";
    }
    throw ConfigurationError(
        "there is no home directory to keep data in; choose a directory with --data DIR");
}

std::filesystem::path userConfigurationFile() {
    std::filesystem::path directory = absolutePathIn("XDG_CONFIG_HOME");
    if (directory.empty()) {
        const std::filesystem::path home = absolutePathIn("HOME");
        directory = home.empty() ? home : home / ".config";
    }
    const std::filesystem::path file = directory / "calljournal" / "calljournal.toml";
    std::error_code ignored;
    return !directory.empty() && std::filesystem::exists(file, ignored) ? file : std::filesystem::path();
}

void makeDataDirectory(const std::filesystem::path& directory) {
    std::error_code error;
    if (std::filesystem::is_directory(directory, error)) {
        refuseOpenToAll(directory);
        return;
    }
    if (directory.has_parent_path()) {
        std::filesystem::create_directories(directory.parent_path(), error);
        if (error) {
            refuse(directory, error);
        }
    }
    if (::mkdir(directory.c_str(), S_IRWXU) != 0 &&
        !(errno == EEXIST && std::filesystem::is_directory(directory, error))) {
        refuse(directory, {errno, std::generic_category()});
    }
}

}  // namespace host
