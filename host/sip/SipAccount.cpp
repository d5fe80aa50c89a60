#include "host/sip/SipAccount.h"

#include <sys/stat.h>

#include <algorithm>
#include <stdexcept>

#include "host/config/ConfigurationReader.h"
#include "host/config/TomlSection.h"
#include "host/text-files/WholeFile.h"

namespace host {

namespace {

constexpr std::size_t kMostBytes = 64U * 1024U;

/// The telephone's files have no escapes.
bool isWritable(std::string_view text, std::string_view forbidden) {
    return std::none_of(text.begin(), text.end(), [forbidden](char c) {
        return static_cast<unsigned char>(c) < ' ' || forbidden.find(c) != std::string_view::npos;
    });
}

void readWritable(TomlSection& section, const char* key, std::string& value, std::string_view forbidden) {
    section.read(key, value);
    if (!isWritable(value, forbidden)) {
        section.refuse(key, "must not have control characters, nor any of " + std::string(forbidden));
    }
}

std::string readPassword(const TomlSection& section, const std::filesystem::path& file) {
    struct stat status {};
    if (::stat(file.c_str(), &status) == 0 && S_ISREG(status.st_mode) && (status.st_mode & 077U) != 0) {
        section.refuse("password-file",
                       "\"" + file.string() + "\" can be read by other users; chmod 600 protects it");
    }
    std::string password;
    try {
        password = readWholeFile(file, kMostBytes);
    } catch (const std::runtime_error& error) {
        section.refuse("password-file", "\"" + file.string() + "\" cannot be read: " + error.what());
    }
    while (!password.empty() && (password.back() == '\n' || password.back() == '\r')) {
        password.pop_back();
    }
    if (password.empty() || !isWritable(password, "\"")) {
        section.refuse("password-file",
                       "\"" + file.string() + "\" must have one text line without quotation marks");
    }
    return password;
}

void requireReachable(const TomlSection& section, const char* key, const std::string& address) {
    if (!canBeReached(address)) {
        section.refuse(key, "has a port or a transport that does not exist; transport is udp, tcp or tls");
    }
}

void readAddress(TomlSection& section, SipAccount& account) {
    readWritable(section, "account", account.uri, "<>\" ");
    if (account.uri.empty()) {
        section.refuse("account", "is missing");
    }
    const std::optional<SipAddress> address = parseSipAddress(account.uri);
    if (!address) {
        section.refuse("account", "must be a SIP address, such as \"sip:alice@example.org\"");
    }
    if (hasPassword(account.uri)) {
        section.refuse("account", "must have no password, which is for password-file");
    }
    if (!isWritable(address->user, ";\"<> ")) {
        section.refuse("account", "the user must have no blank, quotation mark, \";\", \"<\" or \">\"");
    }
    requireReachable(section, "account", account.uri);
    account.address = *address;
}

void readOutbound(TomlSection& section, std::string& outbound) {
    readWritable(section, "outbound", outbound, "\"<> ");
    if (outbound.empty()) {
        return;
    }
    const std::size_t scheme = outbound.starts_with("sip:") ? 4 : outbound.starts_with("sips:") ? 5 : 0;
    if (scheme == 0 || outbound.find_first_of("@:;?/", scheme) == scheme || scheme == outbound.size()) {
        section.refuse("outbound", "must be the address of a proxy, such as \"sip:proxy.example.org\"");
    }
    requireReachable(section, "outbound", outbound);
}

void readAudio(TomlSection& section, std::string& audio) {
    readWritable(section, "audio", audio, "\"");
    const std::string module = audio.substr(0, audio.find(','));
    const bool valid =
        audio == "none" ||
        (module.size() < audio.size() && !module.empty() &&
         module.find_first_not_of("abcdefghijklmnopqrstuvwxyz_0123456789") == std::string::npos);
    if (!valid) {
        section.refuse("audio", R"(must be "none" or a module and a device, such as "alsa,default")");
    }
}

void readBaresip(TomlSection& section, std::optional<Endpoint>& baresip) {
    std::string text;
    section.read("baresip", text);
    if (!text.empty()) {
        baresip = parseEndpoint(text);
        if (!baresip || baresip->port == 0) {
            section.refuse("baresip", "must be HOST:PORT, such as \"127.0.0.1:4444\"");
        }
    }
}

SipAccount readSection(TomlSection& section, const std::filesystem::path& file) {
    SipAccount account;
    readAddress(section, account);
    readWritable(section, "name", account.name, "\"<>");
    readWritable(section, "auth-user", account.authUser, ";\"<> ");
    readOutbound(section, account.outbound);
    readWritable(section, "listen", account.listen, " ");
    if (!account.listen.empty() && !parseEndpoint(account.listen)) {
        section.refuse("listen", "must be ADDRESS:PORT, such as \"192.0.2.7:5060\"");
    }
    section.read("register", account.registers);
    readAudio(section, account.audio);
    readBaresip(section, account.baresip);
    std::string passwordFile;
    section.read("password-file", passwordFile);
    if (!passwordFile.empty()) {
        account.password = readPassword(section, file.parent_path() / passwordFile);
    }
    section.finish();
    return account;
}

}  // namespace

std::string SipAccount::device() const {
    return deviceOf(address);
}

SipAccount readSipAccount(std::string_view toml, const std::filesystem::path& file) {
    const toml::table table = parseToml(toml, file.string());
    TomlSection whole(table, "", file.string());
    std::optional<TomlSection> section = whole.section("sip");
    if (!section) {
        throw ConfigurationError(file.string() + ": has no section [sip]");
    }
    SipAccount account = readSection(*section, file);
    whole.finish();
    return account;
}

SipAccount loadSipAccount(const std::filesystem::path& file) {
    std::string toml;
    try {
        toml = readWholeFile(file, kMostBytes);
    } catch (const std::runtime_error& error) {
        throw ConfigurationError(file.string() + ": cannot be read: " + error.what());
    }
    return readSipAccount(toml, file);
}

}  // namespace host
