#include "host/sip/PhoneDirectory.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <cerrno>
#include <stdexcept>
#include <system_error>

#include "host/config/DataDirectory.h"
#include "host/config/FileReplacement.h"

namespace host {

namespace {

/// More calls at once are refused with "busy here" and leave no trace.
constexpr int kMostCalls = 64;
/// Seconds between two registrations.
constexpr int kRegistration = 600;

std::string audioOf(const SipAccount& account) {
    const bool silent = account.audio == "none";
    // A bridge sends the sound of its player to its source. With one for both, a peer hears itself, and a
    // second call at once may hear the first.
    const std::string player = silent ? "aubridge,played" : account.audio;
    const std::string source = silent ? "aubridge,sent" : account.audio;
    const std::string module = player.substr(0, player.find(','));
    return "audio_player " + player + "\naudio_source " + source + "\naudio_alert " + player + "\nmodule " +
           module + ".so\n";
}

void requireModule(const std::string& audio) {
    const std::string module = audio.substr(0, audio.find(',')) + ".so";
    if (audio != "none" && !std::filesystem::exists(std::filesystem::path(kPhoneModules) / module)) {
        throw std::runtime_error("baresip has no audio module " + module + " in " + kPhoneModules +
                                 "; see the value of audio in the account file");
    }
}

}  // namespace

std::string phoneConfiguration(const SipAccount& account, std::uint16_t controlPort) {
    std::string text;
    if (!account.listen.empty()) {
        text += "sip_listen " + account.listen + '\n';
    }
    text += "call_max_calls " + std::to_string(kMostCalls) + '\n';
    text += std::string("module_path ") + kPhoneModules + "\nmodule g711.so\n";
    text += audioOf(account);
    for (const char* module : {"account", "menu", "ctrl_tcp"}) {
        text += std::string("module_app ") + module + ".so\n";
    }
    return text + "ctrl_tcp_listen 127.0.0.1:" + std::to_string(controlPort) + '\n';
}

std::string phoneAccount(const SipAccount& account) {
    std::string text = account.name.empty() ? std::string() : '"' + account.name + "\" ";
    text += '<' + account.uri + ">;answermode=manual;regint=";
    text += std::to_string(account.registers ? kRegistration : 0);
    if (!account.password.empty()) {
        // Otherwise it is the user of the address, as it was written.
        if (!account.authUser.empty()) {
            text += ";auth_user=" + account.authUser;
        }
        text += ";auth_pass=\"" + account.password + '"';
    }
    if (!account.outbound.empty()) {
        text += ";outbound=\"" + account.outbound + '"';
    }
    return text + '\n';
}

PhoneDirectory::PhoneDirectory(std::filesystem::path path) : m_path(std::move(path)) {
    makeDataDirectory(m_path);
    if (::chmod(m_path.c_str(), S_IRWXU) != 0) {
        throw std::system_error(errno, std::generic_category(), m_path.string());
    }
    m_lock =
        FileDescriptor(::open((m_path / "lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR));
    if (!m_lock.isOpen() || ::flock(m_lock.get(), LOCK_EX | LOCK_NB) != 0) {
        throw std::runtime_error("another SIP gateway uses " + m_path.string() +
                                 "; give this one a directory of its own with --data");
    }
}

PhoneDirectory::~PhoneDirectory() {
    std::error_code ignored;
    std::filesystem::remove(m_path / "accounts", ignored);
}

void PhoneDirectory::write(const SipAccount& account, std::uint16_t controlPort) const {
    requireModule(account.audio);
    replaceFile(m_path / "config", phoneConfiguration(account, controlPort));
    replaceFile(m_path / "accounts", phoneAccount(account));
    replaceFile(m_path / "contacts", "");
}

}  // namespace host
