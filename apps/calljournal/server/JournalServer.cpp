#include "apps/calljournal/server/JournalServer.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>

#include "apps/calljournal/command-line/CommandLine.h"
#include "apps/calljournal/output/ErrorOutput.h"
#include "apps/calljournal/server/StartAhead.h"
#include "host/api-client/ApiAddress.h"
#include "host/config/DataDirectory.h"
#include "host/data/DatabaseMaintenance.h"
#include "host/database/Database.h"
#include "host/framework/AsioTimerSource.h"
#include "host/framework/HostFrameworkContext.h"
#include "host/framework/LibraryLoader.h"
#include "host/framework/Strand.h"
#include "host/framework/WorkerPool.h"
#include "host/http/ApiToken.h"
#include "host/http/HttpApi.h"
#include "host/http/Metrics.h"
#include "host/journal-events/EventQueue.h"
#include "host/line/Line.h"
#include "host/log/Log.h"
#include "host/management/LocalManagement.h"
#include "host/remote/ChangeReporter.h"
#include "host/remote/RemoteServer.h"
#include "host/remote/SocketAddress.h"
#include "host/services/HardwareVariant.h"
#include "host/stored-lists/HistoryMaintenance.h"
#include "host/systemd/ServiceManager.h"
#include "host/tls/CertificateWarning.h"
#include "host/tls/Certificates.h"
#include "host/tls/ClientContext.h"
#include "host/tls/ServerCertificate.h"
#include "host/webhooks/Signature.h"
#include "host/webhooks/Webhooks.h"
#include "journalservice/JournalServiceIfc.h"
#include "platform/logging/Logging.h"
#include "platform/texts/SoftwareTypes.h"

namespace calljournal {
namespace {

constexpr const char* kDatabaseName = "journal.db";
constexpr const char* kTokenName = "api-token";
/// Relative to the program's directory.
constexpr const char* kPageDirectory = "../share/calljournal/web";

host::LineSettings lineSettings(const host::Configuration& configuration, const host::EventQueue* events) {
    const host::Configuration::Line& line = configuration.lines.front();
    host::LineSettings settings;
    settings.link.host = configuration.callSwitch.host;
    settings.link.port = configuration.callSwitch.port;
    if (configuration.callSwitch.tls) {
        settings.link.tls = configuration.callSwitch.trust;
        // The link reads the files for each connection; what is wrong with them ends the start.
        static_cast<void>(host::clientContext(*settings.link.tls));
        if (const host::CertificateFiles& own = settings.link.tls->own; !own.certificate.empty()) {
            host::warnOfCertificate(own, host::factsOfCertificate(own.certificate), "the switch refuses it");
        }
    }
    settings.link.ownDevice = line.device;
    settings.link.edition = configuration.callSwitch.edition;
    settings.link.session = configuration.callSwitch.session;
    settings.link.sendFilters = configuration.callSwitch.sendFilters;
    settings.link.reconnectMax = configuration.callSwitch.reconnectMax;
    settings.link.callMaxAge = configuration.callSwitch.callMax;
    settings.managementFirst = configuration.management;
    settings.managementOverrides = configuration.managementOverrides;
    settings.region = configuration.digits.region;
    settings.featureAccessCodes = configuration.digits.featureAccessCodes;
    settings.outsideLine = configuration.digits.outsideLine;
    settings.dialForm =
        configuration.digits.dialInternational ? host::DialForm::eInternational : host::DialForm::eNational;
    settings.link.bluetooth = line.bluetooth;
    settings.neverLog = line.neverLog;
    for (const host::Configuration::SharedDevice& shared : line.shared) {
        settings.link.sharedDevices.push_back(shared.device);
        if (shared.logMissedCalls) {
            settings.loggedSharedDevices.insert(shared.device);
        }
    }
    settings.events = events;
    return settings;
}

/// Null without a webhook.
std::unique_ptr<host::EventQueue> eventQueue(const host::Configuration& configuration) {
    std::set<host::JournalEventKind> wanted;
    for (const host::Configuration::Webhook& each : configuration.webhooks) {
        wanted.insert(each.events.begin(), each.events.end());
    }
    return wanted.empty() ? nullptr
                          : std::make_unique<host::EventQueue>(configuration.lines.front().device, wanted);
}

std::vector<host::WebhookSettings> webhookSettings(const host::Configuration& configuration) {
    std::vector<host::WebhookSettings> webhooks;
    for (const host::Configuration::Webhook& each : configuration.webhooks) {
        if (!each.authorities.empty()) {
            // libcurl reads the file for each connection; what is wrong with it ends the start.
            host::requirePeerOf(*host::tlsContext(asio::ssl::context::tls_client), each.authorities);
        }
        webhooks.push_back({each.url, each.events, host::readSecret(each.secretFile), each.authorities});
    }
    return webhooks;
}

host::HttpApiSettings httpSettings(const host::Configuration& configuration,
                                   const std::filesystem::path& dataDirectory) {
    host::HttpApiSettings settings;
    settings.server.listen = configuration.api.listen;
    if (!configuration.api.tls.certificate.empty()) {
        settings.server.certificate = std::make_shared<host::ServerCertificate>(configuration.api.tls);
    }
    settings.publicUrl = configuration.api.publicUrl;
    const std::string name = settings.server.certificate ? settings.server.certificate->hostName() : "";
    if (settings.publicUrl.empty() && !name.empty()) {
        settings.publicUrl = "https://" + host::Endpoint{name, settings.server.listen.port}.text() + "/";
    }
    settings.allowedOrigins = configuration.api.allowedOrigins;
    if (configuration.api.auth == host::Configuration::Auth::eToken) {
        settings.token = host::apiToken(dataDirectory / kTokenName);
    }
    settings.page = host::LibraryLoader::programDirectory() / kPageDirectory;
    return settings;
}

/// Logs a warning for a SIP phone at a switch that keeps the call log: such a phone follows its calls by
/// itself.
void warnOfDoubleEntries(const host::LocalManagement& management) {
    const auto values = management.values();
    const auto is = [&values](const char* key, const char* value) {
        const auto found = values.find(key);
        return found != values.end() && found->second == value;
    };
    if (is("software-type", softwaretypes::sip) && is("system-identifier", "2")) {
        logAppUni(
            "Journal", __FILE_NAME__, 3, __LINE__,
            "system-identifier is 2 and software-type is %s: a SIP phone files its calls itself, and the "
            "switch reports them again, so every call is listed twice; set system-identifier to 0",
            softwaretypes::sip);
    }
}

/// "2 changes (1 new call, 1 other)".
std::string changesText(std::uint64_t changes, std::uint64_t calls) {
    const auto count = [](std::uint64_t number, const char* what) {
        return std::to_string(number) + " " + what + (number == 1 ? "" : "s");
    };
    return count(changes, "change") + " (" + count(calls, "new call") + ", " +
           std::to_string(changes - std::min(calls, changes)) + " other)";
}

}  // namespace

/// The components in dependency order.
class JournalServer::Impl {
public:
    Impl(const host::Configuration& configuration, const std::filesystem::path& dataDirectory,
         host::ServerSocket& socket)
        : m_metrics(configuration.lines.front().device, JOURNAL_VERSION),
          m_database(databaseIn(dataDirectory)),
          m_library(host::LibraryLoader::locate(host::LibraryLoader::kJournalLibrary,
                                                host::LibraryLoader::programDirectory())),
          m_events(eventQueue(configuration)),
          m_line(lineSettings(configuration, m_events.get()), m_library.createJournalService(), m_database,
                 m_pool, m_timerSource),
          m_invoker(m_library.createJournalServiceInvoker()),
          m_contactGetterInvoker(m_library.createContactGetterInvoker()),
          m_socket(socket),
          m_device(configuration.lines.front().device),
          m_entries({dynamic_cast<JournalServiceIfc&>(*m_line.journal()), m_database, m_device,
                     &m_line.digits(), [this] { m_http->resync(); },
                     [this] { return m_line.management().aheadOfUtc(); }, m_events.get()}),
          m_retention(m_entries, m_callDeletion, configuration.data.keep),
          m_httpSettings(httpSettings(configuration, dataDirectory)),
          m_dataDirectory(dataDirectory) {
        // The library reads the phone's hardware variant from the program. 0: a phone without its own user
        // interface.
        host::HardwareVariant::set(0);
        m_database.setWriteListener([this](std::chrono::duration<double> time, std::size_t calls) {
            m_metrics.databaseWrote(time, calls);
        });
        m_line.setCallsListener([this] { m_http->liveCallsChanged(); });
        m_line.setEventListener([this](std::string_view kind) { m_metrics.switchEvent(kind); });
        m_invoker->initInvoker(&m_framework);
        m_contactGetterInvoker->initInvoker(&m_framework);
        m_line.phonebook().setChangeListener([this] { m_maintenance.phonebookChanged(); });
        if (m_events) {
            m_webhooks.emplace(m_database, *m_events, webhookSettings(configuration), &m_line.digits());
        }
    }

    [[nodiscard]] host::Line& line() noexcept { return m_line; }

    void start() {
        // First, because it fails if another journal uses the address; the switch then gets no connection.
        m_http = std::make_unique<host::HttpApi>(httpBackend(), m_httpSettings);
        if (m_webhooks) {
            m_webhooks->start();
        } else {
            host::WaitingEvents::forget(m_database);
        }
        m_line.start();
        warnOfDoubleEntries(m_line.management());
        m_remote = std::make_unique<host::RemoteServer>(
            m_socket, host::RemoteBackend{*m_line.journal(), m_reporter, *m_contactGetterInvoker, m_framework,
                                          [this] { return m_library.createJournalServiceObserverProxy(); },
                                          [this] { return m_line.storedLists().unviewed(); }});
        m_httpEndpoint = m_http->start();
        m_addressFile.emplace(m_dataDirectory, addressOfServer());
        m_maintenance.start();
        m_databaseMaintenance.start();
        // Last, because changes by its clients are reported to the HTTP API.
        m_remote->start();
    }

    void setTelephone(std::function<host::TelephoneState()> telephone) { m_telephone = std::move(telephone); }

    void setConfigurationFile(std::filesystem::path file) { m_configurationFile = std::move(file); }

    void reportAlive() {
        m_alive.post([] { host::ServiceManager::alive(); });
    }

    [[nodiscard]] HttpAddress httpAddress() const {
        return {m_httpEndpoint, m_httpSettings.token, m_httpSettings.server.certificate != nullptr};
    }

    void reload() {
        if (m_http) {
            m_http->reloadTokens();
        }
        if (m_httpSettings.server.certificate) {
            m_httpSettings.server.certificate->reload();
            m_addressFile->write(addressOfServer());
        }
    }

    /// Stops once; returns the number of changes that are not stored.
    [[nodiscard]] std::size_t stop() {
        if (std::exchange(m_stopped, true)) {
            return m_notStored;
        }
        m_addressFile.reset();
        // First, because requests of clients may wait for the switch.
        m_line.disconnect();
        if (m_remote) {
            m_remote->stop();
        }
        m_maintenance.stop();
        if (m_http) {
            m_http->stop();  // its last requests and imports may send a "resync"
        }
        m_http.reset();
        m_remote.reset();
        m_line.stop();
        if (m_webhooks) {
            m_webhooks->stop();
        }
        m_databaseMaintenance.stop();
        m_notStored = m_databaseMaintenance.storeRest();
        m_database.removeMigrationCopy();
        return m_notStored;
    }

    [[nodiscard]] const host::Database& database() const { return m_database; }

private:
    [[nodiscard]] host::ApiAddressFile::Server addressOfServer() const {
        const auto& certificate = m_httpSettings.server.certificate;
        return {m_httpEndpoint, certificate ? certificate->pin() : "", m_configurationFile};
    }

    host::HttpBackend httpBackend() {
        auto& journal = dynamic_cast<JournalServiceIfc&>(*m_line.journal());
        return {m_device,
                journal,
                m_line.management(),
                m_line.phonebook(),
                m_database,
                m_line.storedLists(),
                m_entries,
                m_metrics,
                m_line.callControl(),
                m_line.dialling(),
                m_line.numberTexts(),
                [this] {
                    const host::CstaLink::Status status = m_line.linkStatus();
                    return host::LineState{
                        .connected = status.connected,
                        .monitoring = status.monitoring,
                        .callControl = status.callControl,
                        .liveCallCount = m_line.liveCallCount(),
                        .telephone = m_telephone ? std::optional(m_telephone()) : std::nullopt};
                },
                [this] { return m_remote->clientCount(); },
                &host::Log::counts,
                [this] { return m_webhooks ? m_webhooks->states() : std::vector<host::WebhookState>(); },
                JOURNAL_VERSION};
    }

    StartAhead m_startAhead;
    host::Metrics m_metrics;
    host::Database m_database;
    host::WorkerPool m_pool;
    host::AsioTimerSource m_timerSource{m_pool};
    host::Strand m_alive{m_pool};
    host::LibraryLoader m_library;
    host::HostFrameworkContext m_framework;
    const std::unique_ptr<host::EventQueue> m_events;
    host::Line m_line;
    std::unique_ptr<Invoker> m_invoker;
    std::unique_ptr<Invoker> m_contactGetterInvoker;
    host::ChangeReporter m_reporter{*m_invoker, [this] { m_http->resync(); }};
    host::ServerSocket& m_socket;
    std::unique_ptr<host::RemoteServer> m_remote;
    const std::string m_device;
    host::StoredEntries m_entries;
    host::CallDeletion m_callDeletion{m_entries};
    host::Retention m_retention;
    host::EntryNames m_names{m_entries};
    host::HistoryMaintenance m_maintenance{m_pool, m_timerSource, m_retention, m_names};
    host::DatabaseMaintenance m_databaseMaintenance{m_database, m_pool, m_timerSource};
    const host::HttpApiSettings m_httpSettings;
    std::unique_ptr<host::HttpApi> m_http;
    /// Empty if the program runs no telephone.
    std::function<host::TelephoneState()> m_telephone;
    host::Endpoint m_httpEndpoint;
    const std::filesystem::path m_dataDirectory;
    std::filesystem::path m_configurationFile;
    std::optional<host::ApiAddressFile> m_addressFile;
    std::optional<host::Webhooks> m_webhooks;
    bool m_stopped = false;
    std::size_t m_notStored = 0;
};

std::unique_ptr<host::ServerSocket> JournalServer::claim(const std::filesystem::path& dataDirectory) {
    host::makeDataDirectory(dataDirectory);
    auto socket = std::make_unique<host::ServerSocket>(dataDirectory);
    host::ApiAddressFile::removeStale(dataDirectory);
    return socket;
}

std::filesystem::path JournalServer::databaseIn(const std::filesystem::path& dataDirectory) {
    return dataDirectory / kDatabaseName;
}

bool JournalServer::isOwnFile(const std::filesystem::path& dataDirectory, const std::filesystem::path& file) {
    std::error_code ignored;
    if (!std::filesystem::equivalent(std::filesystem::absolute(file).parent_path(), dataDirectory, ignored)) {
        return false;
    }
    constexpr std::array<std::string_view, 4> kNames{kDatabaseName, kTokenName, host::ApiAddressFile::kName,
                                                     host::kSocketName};
    // Others have a suffix: -wal, .replaced, .new.
    const std::string name = file.filename().string();
    return std::any_of(kNames.begin(), kNames.end(),
                       [&name](std::string_view each) { return name.starts_with(each); });
}

JournalServer::JournalServer(const host::Configuration& configuration,
                             const std::filesystem::path& dataDirectory, host::ServerSocket& socket)
    : m_impl(std::make_unique<Impl>(configuration, dataDirectory, socket)) {}

JournalServer::~JournalServer() {
    static_cast<void>(stop());
}

void JournalServer::setChangeListener(std::function<void(const std::string&)> listener) {
    m_impl->line().setChangeListener(std::move(listener));
}

void JournalServer::setTelephone(std::function<host::TelephoneState()> telephone) {
    m_impl->setTelephone(std::move(telephone));
}

void JournalServer::setConfigurationFile(std::filesystem::path file) {
    m_impl->setConfigurationFile(std::move(file));
}

std::string JournalServer::HttpAddress::text() const {
    return (isSecure ? "https://" : "http://") + endpoint.text() + "/";
}

std::string JournalServer::HttpAddress::signInText() const {
    return text() + (token ? "?token=" + *token : std::string());
}

JournalServer::HttpAddress JournalServer::httpAddress() const {
    return m_impl->httpAddress();
}

void JournalServer::start() {
    m_impl->start();
}

void JournalServer::reload() {
    m_impl->reload();
}

void JournalServer::reportAlive() {
    m_impl->reportAlive();
}

std::size_t JournalServer::stop() {
    return m_impl->stop();
}

int JournalServer::end() {
    const std::size_t kept = stop();
    if (kept > 0) {
        printError("the database refuses " + changesText(kept, m_impl->database().keptCalls()) +
                   "; they are not stored");
    }
    const std::uint64_t lost = m_impl->database().lostCount();
    if (lost > 0) {
        printError("lost since the start: " + changesText(lost, m_impl->database().lostCalls()) +
                   "; the database refused them, and they were not kept");
    }
    return kept > 0 || lost > 0 ? eFailed : eDone;
}

}  // namespace calljournal
