#include "host/http/ApiToken.h"

#include <fcntl.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cerrno>
#include <cstdio>
#include <stdexcept>
#include <system_error>

#include "host/config/FileReplacement.h"
#include "host/framework/FileDescriptor.h"

namespace host {
namespace {

constexpr std::size_t kShortest = 32;
constexpr std::size_t kLongest = 256;

[[noreturn]] void fail(const std::filesystem::path& file, const std::string& what) {
    throw std::runtime_error(file.string() + " " + what);
}

[[noreturn]] void failWithErrno(const std::filesystem::path& file, const char* what) {
    fail(file, std::string(what) + ": " + std::generic_category().message(errno));
}

std::string readToken(const std::filesystem::path& path, const FileDescriptor& file) {
    struct stat status {};
    if (::fstat(file.get(), &status) != 0 || (status.st_uid != ::geteuid() && status.st_uid != 0)) {
        fail(path, "belongs to another user, who knows it; remove it to get a new one");
    }
    if (!S_ISREG(status.st_mode)) {
        fail(path, "is not a regular file; remove it to get a new one");
    }
    std::array<char, kLongest + 2> buffer{};
    const ssize_t length = ::read(file.get(), buffer.data(), buffer.size());
    if (length < 0) {
        failWithErrno(path, "cannot be read");
    }
    std::string token(buffer.data(), static_cast<std::size_t>(length));
    while (!token.empty() && std::isspace(static_cast<unsigned char>(token.back())) != 0) {
        token.pop_back();
    }
    const bool plain = std::all_of(token.begin(), token.end(), [](char each) {
        return std::isalnum(static_cast<unsigned char>(each)) != 0 || each == '-' || each == '_';
    });
    if (!plain || token.size() < kShortest || token.size() > kLongest) {
        fail(path, "holds no token of 32 to 256 letters and digits; remove it to get a new one");
    }
    // A copied file may have wider permissions.
    if (::fchmod(file.get(), S_IRUSR | S_IWUSR) != 0) {
        failWithErrno(path, "cannot be kept from others");
    }
    return token;
}

std::string newToken() {
    std::array<unsigned char, 32> bytes{};
    if (::getrandom(bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size())) {
        throw std::runtime_error("there are no random numbers for a token");
    }
    std::string token;
    for (const unsigned char byte : bytes) {
        std::array<char, 3> digits{};
        std::snprintf(digits.data(), digits.size(), "%02x", static_cast<unsigned>(byte));
        token += digits.data();
    }
    return token;
}

}  // namespace

std::string apiToken(const std::filesystem::path& path) {
    if (const FileDescriptor present(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
        present.isOpen()) {
        return readToken(path, present);
    }
    if (errno != ENOENT) {
        failWithErrno(path, "cannot be read");
    }
    std::string token = newToken();
    replaceFile(path, token + "\n");
    return token;
}

}  // namespace host
