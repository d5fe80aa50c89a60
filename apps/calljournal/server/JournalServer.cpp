#include "apps/calljournal/server/JournalServer.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>

#include "apps/calljournal/command-line/CommandLine.h"
#include "apps/calljournal/output/ErrorOutput.h"
#include "apps/calljournal/server/ServerSettings.h"
#include "apps/calljournal/server/StartAhead.h"
#include "host/api-client/ApiAddress.h"
#include "host/config/DataDirectory.h"
#include "host/data/DatabaseMaintenance.h"
#include "host/data/LiveCallWriter.h"
#include "host/database/Database.h"
#include "host/framework/AsioTimerSource.h"
#include "host/framework/HostFrameworkContext.h"
#include "host/framework/LibraryLoader.h"
#include "host/framework/Strand.h"
#include "host/framework/WorkerPool.h"
#include "host/http/HttpApi.h"
#include "host/http/Metrics.h"
#include "host/log/Log.h"
#include "host/management/LocalManagement.h"
#include "host/remote/ChangeReporter.h"
#include "host/remote/RemoteServer.h"
#include "host/remote/SocketAddress.h"
#include "host/served-lines/ServedLines.h"
#include "host/services/HardwareVariant.h"
#include "host/systemd/ServiceManager.h"
#include "host/tls/ServerCertificate.h"
#include "host/webhooks/Webhooks.h"
#include "platform/logging/Logging.h"
#include "platform/texts/SoftwareTypes.h"

namespace calljournal {
namespace {

constexpr const char* kDatabaseName = "journal.db";
constexpr const char* kTokenName = "api-token";
constexpr unsigned kWorkers = 2;
constexpr unsigned kMostWorkers = 64;
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
        : m_metrics(JOURNAL_VERSION, configuration.api.metricsPerLine),
          m_database(databaseIn(dataDirectory)),
          m_library(host::LibraryLoader::locate(host::LibraryLoader::kJournalLibrary,
                                                host::LibraryLoader::programDirectory())),
          m_lines(
              linesSettings(configuration),
              {.database = m_database,
               .liveCalls = m_liveCalls,
               .pool = m_pool,
               .timers = m_timerSource,
               .library = m_library,
               .metrics = m_metrics,
               .version = JOURNAL_VERSION,
               .webhookEvents = webhookEvents(configuration),
               .webhookEventStored =
                   [this] {
                       if (m_webhooks) {
                           m_webhooks->eventAdded();
                       }
                   },
               .telephone = [this] { return m_telephone ? std::optional(m_telephone()) : std::nullopt; }}),
          m_invoker(m_library.createJournalServiceInvoker()),
          m_contactGetterInvoker(m_library.createContactGetterInvoker()),
          m_socket(socket),
          m_httpSettings(httpSettings(configuration, dataDirectory / kTokenName)),
          m_dataDirectory(dataDirectory) {
        // The library reads the phone's hardware variant from the program. 0: a phone without its own user
        // interface.
        host::HardwareVariant::set(0);
        m_database.setWriteListener([this](std::chrono::duration<double> time, std::size_t calls) {
            m_metrics.databaseWrote(time, calls);
        });
        m_invoker->initInvoker(&m_framework);
        m_contactGetterInvoker->initInvoker(&m_framework);
        if (!configuration.webhooks.empty()) {
            m_webhooks.emplace(m_database, webhookSettings(configuration), &firstLine().digits());
        }
    }

    [[nodiscard]] host::Line& firstLine() noexcept { return m_lines.firstLine().line(); }

    void start() {
        // First, because it fails if another journal uses the address; the switch then gets no connection.
        m_http = std::make_unique<host::HttpApi>(
            host::HttpBackend{
                m_lines, m_database, m_metrics, [this] { return m_remote->clientCount(); },
                &host::Log::counts,
                [this] { return m_webhooks ? m_webhooks->states() : std::vector<host::WebhookState>(); }},
            m_httpSettings);
        m_lines.setServer(m_http->serverForLines());
        if (m_webhooks) {
            m_webhooks->start();
        } else {
            host::WaitingEvents::forget(m_database);
        }
        m_lines.start();
        warnOfDoubleEntries(firstLine().management());
        m_remote = std::make_unique<host::RemoteServer>(
            m_socket,
            host::RemoteBackend{[this](const std::string& device) { return m_lines.remoteLine(device); },
                                m_reporter, *m_contactGetterInvoker, m_framework,
                                [this] { return m_library.createJournalServiceObserverProxy(); }});
        m_lines.setEndClients([this](const std::string& device) { m_remote->disconnectLine(device); });
        m_httpEndpoint = m_http->start();
        m_addressFile.emplace(m_dataDirectory, addressOfServer());
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
        m_lines.disconnect();
        if (m_remote) {
            m_remote->stop();
        }
        if (m_http) {
            m_lines.endStreams();
            m_http->stop();
        }
        m_lines.stop();  // its last requests and imports may send a "resync"
        m_http.reset();
        m_remote.reset();
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

    StartAhead m_startAhead;
    host::Metrics m_metrics;
    host::Database m_database;
    host::LiveCallWriter m_liveCalls{m_database};
    /// Threads that wait for the disk share a flush: with more of them, more calls are filed at once.
    host::WorkerPool m_pool{kWorkers, kMostWorkers};
    host::AsioTimerSource m_timerSource{m_pool};
    host::Strand m_alive{m_pool};
    host::LibraryLoader m_library;
    host::HostFrameworkContext m_framework;
    /// Empty if the program runs no telephone.
    std::function<host::TelephoneState()> m_telephone;
    /// Before the lines, whose events it sends.
    std::optional<host::Webhooks> m_webhooks;
    host::ServedLines m_lines;
    std::unique_ptr<Invoker> m_invoker;
    std::unique_ptr<Invoker> m_contactGetterInvoker;
    host::ChangeReporter m_reporter{*m_invoker,
                                    [this](const Executable& journal) { m_lines.resync(journal); }};
    host::ServerSocket& m_socket;
    std::unique_ptr<host::RemoteServer> m_remote;
    host::DatabaseMaintenance m_databaseMaintenance{m_database, m_pool, m_timerSource};
    const host::HttpApiSettings m_httpSettings;
    std::unique_ptr<host::HttpApi> m_http;
    host::Endpoint m_httpEndpoint;
    const std::filesystem::path m_dataDirectory;
    std::filesystem::path m_configurationFile;
    std::optional<host::ApiAddressFile> m_addressFile;
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
    m_impl->firstLine().setChangeListener(std::move(listener));
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
