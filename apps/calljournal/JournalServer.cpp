#include "apps/calljournal/JournalServer.h"

#include "host/config/DataDirectory.h"
#include "host/data/Database.h"
#include "host/framework/AsioAlarmClock.h"
#include "host/framework/HostFrameworkContext.h"
#include "host/framework/LibraryLoader.h"
#include "host/framework/WorkerPool.h"
#include "host/line/Line.h"
#include "host/remote/RemoteServer.h"
#include "host/services/HardwareVariant.h"

namespace host {
namespace {

constexpr const char* kDatabaseName = "journal.db";

LineSettings lineSettings(const Configuration& configuration) {
    const Configuration::Line& line = configuration.lines.front();
    LineSettings settings;
    settings.link.host = configuration.callSwitch.host;
    settings.link.port = configuration.callSwitch.port;
    settings.link.ownDevice = line.device;
    settings.link.edition = configuration.callSwitch.edition;
    settings.link.session = configuration.callSwitch.session;
    settings.link.sendFilters = configuration.callSwitch.sendFilters;
    settings.link.reconnectMax = configuration.callSwitch.reconnectMax;
    settings.managementFirst = configuration.management;
    settings.managementOverrides = configuration.managementOverrides;
    settings.featureAccessCodes = configuration.digits.featureAccessCodes;
    for (const Configuration::SharedDevice& shared : line.shared) {
        if (shared.logMissedCalls) {
            settings.loggedSharedDevices.insert(shared.device);
        }
    }
    return settings;
}

}  // namespace

/// In the order in which each needs the ones before it.
class JournalServer::Parts {
public:
    Parts(const Configuration& configuration, const std::filesystem::path& dataDirectory,
          ServerSocket& socket)
        : m_database(dataDirectory / kDatabaseName),
          m_library(LibraryLoader::locate(LibraryLoader::kJournalLibrary, LibraryLoader::programDirectory())),
          m_line(lineSettings(configuration), m_library.createJournalService(), m_database, m_pool, m_alarms),
          m_invoker(m_library.createJournalServiceInvoker()),
          m_socket(socket) {
        // The library asks the program for the phone's hardware: a plain one, without a user interface of its own.
        HardwareVariant::set(0);
        m_invoker->initInvoker(&m_framework);
    }

    [[nodiscard]] Line& line() noexcept { return m_line; }

    void start() {
        m_line.start();
        m_remote = std::make_unique<RemoteServer>(
            m_socket, RemoteBackend{*m_line.journal(), *m_invoker, m_framework,
                                    [this] { return m_library.createJournalServiceObserverProxy(); }});
        m_remote->start();
    }

    void stop() {
        m_remote.reset();
        m_line.stop();
    }

private:
    Database m_database;
    WorkerPool m_pool;
    AsioAlarmClock m_alarms{m_pool};
    LibraryLoader m_library;
    HostFrameworkContext m_framework;
    Line m_line;
    std::unique_ptr<Invoker> m_invoker;
    ServerSocket& m_socket;
    std::unique_ptr<RemoteServer> m_remote;
};

std::unique_ptr<ServerSocket> JournalServer::claim(const std::filesystem::path& dataDirectory) {
    makeDataDirectory(dataDirectory);
    return std::make_unique<ServerSocket>(dataDirectory);
}

JournalServer::JournalServer(const Configuration& configuration, const std::filesystem::path& dataDirectory,
                             ServerSocket& socket)
    : m_parts(std::make_unique<Parts>(configuration, dataDirectory, socket)) {}

JournalServer::~JournalServer() {
    stop();
}

void JournalServer::setChangeListener(std::function<void(const std::string&)> listener) {
    m_parts->line().setChangeListener(std::move(listener));
}

void JournalServer::start() {
    m_parts->start();
}

void JournalServer::stop() {
    m_parts->stop();
}

}  // namespace host
