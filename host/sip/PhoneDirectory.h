#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

#include "host/framework/FileDescriptor.h"
#include "host/sip/SipAccount.h"

namespace host {

/// The private directory of the telephone's configuration (mode 0700, files 0600). One process at a time
/// has it. The destructor removes the file that has the password. Not thread-safe.
class PhoneDirectory {
public:
    /// Creates the directory. Throws `std::runtime_error` with a text for the user, also if another process
    /// has it.
    explicit PhoneDirectory(std::filesystem::path path);
    ~PhoneDirectory();
    PhoneDirectory(const PhoneDirectory&) = delete;
    PhoneDirectory& operator=(const PhoneDirectory&) = delete;

    /// Writes the configuration. Throws `std::runtime_error`.
    void write(const SipAccount& account, std::uint16_t controlPort) const;
    [[nodiscard]] const std::filesystem::path& path() const noexcept { return m_path; }

private:
    const std::filesystem::path m_path;
    FileDescriptor m_lock;
};

/// The telephone's file `config`.
[[nodiscard]] std::string phoneConfiguration(const SipAccount& account, std::uint16_t controlPort);
/// The telephone's file `accounts`.
[[nodiscard]] std::string phoneAccount(const SipAccount& account);

/// Where Debian has the telephone's modules.
inline constexpr const char* kPhoneModules = "/usr/lib/baresip/modules";

}  // namespace host
