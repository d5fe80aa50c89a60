#include "apps/calljournal/diagnosis/DataChecks.h"

#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <cstdint>
#include <system_error>

#include "apps/calljournal/server/JournalServer.h"
#include "host/database/DatabaseCopy.h"
#include "host/sip/PhoneDirectory.h"
#include "host/sip/SipAccount.h"
#include "host/tls/Certificates.h"
#include "host/tls/ClientContext.h"
#include "host/webhooks/Signature.h"

namespace calljournal {
namespace {

using Level = Finding::Level;

constexpr const char* kToken = "api-token";
constexpr std::uintmax_t kLittleSpace = 200U << 20U;
constexpr std::uintmax_t kTooLittleSpace = 10U << 20U;
constexpr std::chrono::days kSoon{14};
constexpr const char* kTelephone = "/usr/bin/baresip";

std::string mebibytes(std::uintmax_t bytes) {
    return std::to_string(bytes >> 20U) + " MiB";
}

Finding examineDirectory(const std::filesystem::path& directory) {
    struct stat status {};
    const std::string name = directory.string();
    if (::stat(directory.c_str(), &status) != 0) {
        return {Level::eGood, "data directory", name + " does not exist yet; `serve` makes it"};
    }
    if (!std::filesystem::is_directory(directory)) {
        return {Level::eFailed, "data directory", name + " is no directory; choose another with --data DIR"};
    }
    if (::access(directory.c_str(), R_OK | W_OK | X_OK) != 0) {
        return {Level::eFailed, "data directory",
                name + " cannot be read and written by this user; run this as its owner"};
    }
    if (status.st_uid != ::geteuid()) {
        return {Level::eWarning, "data directory",
                name + " belongs to another user; `serve` must run as that one, so run this as it, too"};
    }
    if ((status.st_mode & S_IWOTH) != 0) {
        return {Level::eFailed, "data directory", "every user may write in " + name + "; chmod 700 " + name};
    }
    std::error_code ignored;
    const std::uintmax_t space = std::filesystem::space(directory, ignored).available;
    if (!ignored && space < kLittleSpace) {
        return {
            space < kTooLittleSpace ? Level::eFailed : Level::eWarning, "data directory",
            name + " has " + mebibytes(space) + " left on its disk; calls cannot be stored on a full one"};
    }
    if ((status.st_mode & (S_IRWXG | S_IRWXO)) != 0) {
        return {Level::eWarning, "data directory",
                "other users may look into " + name + "; chmod 700 " + name};
    }
    return {Level::eGood, "data directory", name + ", " + mebibytes(space) + " free"};
}

Finding examineToken(const std::filesystem::path& file) {
    struct stat status {};
    if (::stat(file.c_str(), &status) != 0) {
        return {Level::eGood, "token", file.string() + " does not exist yet; `serve` makes it"};
    }
    if ((status.st_mode & (S_IRWXG | S_IRWXO)) != 0) {
        return {Level::eWarning, "token",
                "other users may read " + file.string() + ", and then do all that you may; chmod 600 it"};
    }
    return {Level::eGood, "token", file.string()};
}

Finding examineStored(const std::filesystem::path& file) {
    std::error_code ignored;
    if (!std::filesystem::exists(file, ignored)) {
        return {Level::eGood, "database", file.string() + " does not exist yet; `serve` makes it"};
    }
    try {
        host::examineDatabase(file);
        return {Level::eGood, "database",
                file.string() + ", " + mebibytes(std::filesystem::file_size(file, ignored)) + ", undamaged"};
    } catch (const std::exception& error) {
        return {Level::eFailed, "database",
                std::string(error.what()) + "; `calljournal restore` puts a backup back"};
    }
}

std::string dayOf(std::chrono::sys_seconds time) {
    const std::chrono::year_month_day day{std::chrono::floor<std::chrono::days>(time)};
    const auto two = [](unsigned number) { return (number < 10 ? "-0" : "-") + std::to_string(number); };
    return std::to_string(static_cast<int>(day.year())) + two(static_cast<unsigned>(day.month())) +
           two(static_cast<unsigned>(day.day()));
}

Finding examineCertificate(const std::string& subject, const host::CertificateFiles& files) {
    try {
        const auto context = host::tlsContext(asio::ssl::context::tls);
        host::useCertificate(*context, files);
        const host::CertificateFacts facts = host::factsOfCertificate(files.certificate);
        const auto now = std::chrono::system_clock::now();
        const std::string until = files.certificate.string() + " is valid until " + dayOf(facts.notAfter);
        if (facts.notAfter <= now || facts.notBefore > now) {
            return {Level::eFailed, subject,
                    files.certificate.string() + " is valid from " + dayOf(facts.notBefore) + " to " +
                        dayOf(facts.notAfter) + "; get a new one, then SIGHUP"};
        }
        if (facts.notAfter - now < kSoon) {
            return {Level::eWarning, subject, until + "; get a new one, then SIGHUP"};
        }
        return {Level::eGood, subject, until};
    } catch (const std::exception& error) {
        return {Level::eFailed, subject, error.what()};
    }
}

}  // namespace

Findings examineData(const std::filesystem::path& directory) {
    return {examineDirectory(directory), examineToken(directory / kToken),
            examineStored(JournalServer::databaseIn(directory))};
}

Findings examineFiles(const host::Configuration& configuration) {
    Findings findings;
    if (!configuration.api.tls.certificate.empty()) {
        findings.push_back(examineCertificate("certificate", configuration.api.tls));
    }
    if (!configuration.callSwitch.trust.own.certificate.empty()) {
        findings.push_back(examineCertificate("link certificate", configuration.callSwitch.trust.own));
    }
    for (const auto& hook : configuration.webhooks) {
        try {
            static_cast<void>(host::readSecret(hook.secretFile));
            if (!hook.authorities.empty()) {
                host::requirePeerOf(*host::tlsContext(asio::ssl::context::tls_client), hook.authorities);
            }
            findings.push_back({Level::eGood, "webhook", hook.secretFile + " has a secret"});
        } catch (const std::exception& error) {
            findings.push_back({Level::eFailed, "webhook", error.what()});
        }
    }
    return findings;
}

Findings examineSip(const std::filesystem::path& account) {
    Findings findings;
    try {
        findings.push_back({Level::eGood, "SIP account", host::loadSipAccount(account).uri});
    } catch (const std::exception& error) {
        findings.push_back({Level::eFailed, "SIP account", error.what()});
    }
    const bool isInstalled = ::access(kTelephone, X_OK) == 0 && ::access(host::kPhoneModules, R_OK) == 0;
    findings.push_back(isInstalled ? Finding{Level::eGood, "SIP telephone", kTelephone}
                                   : Finding{Level::eFailed, "SIP telephone",
                                             "baresip is not installed; apt install baresip-core"});
    return findings;
}

}  // namespace calljournal
