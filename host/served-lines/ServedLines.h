#pragma once

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <shared_mutex>
#include <string>
#include <vector>

#include "host/csta/association/SwitchLink.h"
#include "host/http/LineApi.h"
#include "host/http/ServedLinesIfc.h"
#include "host/served-lines/IdleLists.h"
#include "host/served-lines/LineRows.h"
#include "host/served-lines/ServedLine.h"
#include "host/served-lines/SharedContacts.h"

namespace host {

/// The lines of the program: those of the configuration, and those that were added while it ran, which are
/// kept in the database. Lines of one switch share its link.
///
/// Threads: one owner constructs, starts and stops it; the operations of `ServedLinesIfc` are thread-safe.
/// Adding and removing lines waits for the database, not for the switch.
class ServedLines final : public ServedLinesIfc {
public:
    /// A switch of the configuration.
    struct Switch {
        /// Empty for the only one.
        std::string name{};
        SwitchLinkConfig link;
    };
    /// A line of the configuration.
    struct Configured {
        ServedLine::Description description;
        LineSettings settings;
    };
    struct Settings {
        /// Never empty; the first is the one of lines that name none.
        std::vector<Switch> switches;
        /// Never empty, each device once.
        std::vector<Configured> lines;
        /// Those of a line that is added: the device, its name and that of its switch.
        std::function<Configured(const std::string&, const std::string&, const std::string&)> added;
    };

    /// Reads the added lines and makes all. Throws a `std::exception` with a text for the user.
    ServedLines(Settings settings, LineSurroundings surroundings);
    /// Calls `stop`.
    ~ServedLines() override;
    ServedLines(const ServedLines&) = delete;
    ServedLines& operator=(const ServedLines&) = delete;

    /// Returns when the journals are loaded. The links are connected asynchronously.
    void start();
    /// The server of the HTTP API, before its first request.
    void setServer(LineApiServer server) { m_server = std::move(server); }
    /// Sets what ends the remote clients of a line that is removed, without waiting. Before the first
    /// request.
    void setEndClients(std::function<void(const std::string&)> endClients) {
        m_endClients = std::move(endClients);
    }
    /// The line of a remote client, by its device; the first one for an empty text.
    [[nodiscard]] std::shared_ptr<RemoteLine> remoteLine(const std::string& device) const;
    /// Makes the readers of the event streams of the line with this journal read again.
    void resync(const Executable& journal) const;
    /// Ends the links to the switches: requests that wait for a response fail at once. Idempotent.
    void disconnect();
    /// Ends the event streams of all lines, later ones as soon as they begin.
    void endStreams();
    /// Requires: the HTTP server and the server of remote clients are stopped. Idempotent.
    void stop();

    /// The first line of the configuration, which is never removed.
    [[nodiscard]] ServedLine& firstLine() noexcept { return *m_first; }
    /// nullptr if there is no such line. It is not stopped while the result lives.
    [[nodiscard]] std::shared_ptr<ServedLine> line(const std::string& device) const;

    // ServedLinesIfc
    [[nodiscard]] std::shared_ptr<const Router> find(const std::string& device) override;
    [[nodiscard]] const std::string& first() const override { return m_first->description().device; }
    [[nodiscard]] bool contains(const std::string& device) const override { return line(device) != nullptr; }
    [[nodiscard]] std::optional<std::vector<LineSummary>> list(bool withRemoved) const override;
    [[nodiscard]] LineTotals totals() const override;
    [[nodiscard]] std::optional<std::map<std::string, Metrics::LineGauges>> gauges(
        bool isByLine) const override;
    [[nodiscard]] Outcome add(const std::string& device, const std::string& name,
                              const std::string& switchName) override;
    [[nodiscard]] Outcome remove(const std::string& device, bool purge) override;
    void useAll() override;
    void keepAlive() override;
    [[nodiscard]] bool endRefused() override;
    [[nodiscard]] std::size_t streamCount() const override;

private:
    struct NamedLink {
        std::string name;
        std::unique_ptr<SwitchLink> link;
    };
    using Lines = std::map<std::string, std::shared_ptr<ServedLine>>;

    [[nodiscard]] SwitchLink* linkOf(const std::string& switchName) const;
    [[nodiscard]] std::shared_ptr<ServedLine> make(Configured line);
    [[nodiscard]] Lines lines() const;
    [[nodiscard]] Outcome removeStored(const std::string& device, bool purge);
    void forEachApi(const std::function<void(LineApi&)>& call) const;

    void unloadLists(std::chrono::milliseconds idle) const;

    const Settings m_settings;
    const LineSurroundings m_surroundings;
    SharedContacts m_sharedContacts;
    LineRows m_rows;
    std::vector<NamedLink> m_links;
    LineApiServer m_server;
    std::function<void(const std::string&)> m_endClients;
    std::shared_ptr<ServedLine> m_first;

    /// Held while a line is added or removed. Lock order: before m_mutex.
    std::mutex m_changeMutex;

    mutable std::shared_mutex m_mutex;
    // Guarded by m_mutex.
    Lines m_lines;
    bool m_isRunning = false;
    /// The API of each line is made with it.
    bool m_usesAll = false;

    IdleLists m_idleLists;
};

}  // namespace host
