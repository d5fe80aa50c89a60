#include "host/served-lines/ServedLines.h"

#include <algorithm>
#include <exception>
#include <set>
#include <stdexcept>
#include <utility>

#include "platform/logging/Logging.h"

namespace host {

ServedLines::ServedLines(Settings settings, LineSurroundings surroundings)
    : m_settings(std::move(settings)),
      m_surroundings(std::move(surroundings)),
      m_sharedContacts(m_surroundings.database, m_surroundings.pool, m_settings.lines.front().settings,
                       [this] {
                           std::vector<std::shared_ptr<ServedLine>> served;
                           for (const auto& [device, line] : lines()) {
                               served.push_back(line);
                           }
                           return served;
                       }),
      m_rows(m_surroundings.database),
      m_idleLists(m_surroundings.pool, m_surroundings.timers,
                  [this](std::chrono::milliseconds idle) { unloadLists(idle); }) {
    for (const Switch& each : m_settings.switches) {
        m_links.push_back({each.name, std::make_unique<SwitchLink>(each.link)});
    }
    for (const Configured& each : m_settings.lines) {
        auto line = make(each);
        if (!m_first) {
            m_first = line;
        }
        m_lines.emplace(each.description.device, std::move(line));
    }
    const auto added = m_rows.read();
    if (!added) {
        throw std::runtime_error("the lines that were added cannot be read from the database; see the log");
    }
    for (const LineRow& each : *added) {
        if (each.isRemoved || m_lines.contains(each.device)) {
            continue;
        }
        if (linkOf(each.switchName) == nullptr) {
            logAppUni("Lines", __FILE_NAME__, 2, __LINE__,
                      "line %s is not served: the configuration has no switch %s", each.device.c_str(),
                      each.switchName.c_str());
            continue;
        }
        m_lines.emplace(each.device, make(m_settings.added(each.device, each.name, each.switchName)));
    }
}

ServedLines::~ServedLines() {
    stop();
}

void ServedLines::start() {
    m_sharedContacts.start();
    for (const auto& [device, line] : lines()) {
        line->start();
    }
    for (const NamedLink& each : m_links) {
        each.link->start();
    }
    m_idleLists.start();
    const std::unique_lock lock(m_mutex);
    m_isRunning = true;
}

void ServedLines::disconnect() {
    const std::lock_guard changing(m_changeMutex);
    {
        const std::unique_lock lock(m_mutex);
        m_isRunning = false;
    }
    for (const auto& [device, line] : lines()) {
        line->disconnect();
    }
    for (const NamedLink& each : m_links) {
        each.link->stop();
    }
}

void ServedLines::endStreams() {
    forEachApi([](LineApi& api) { api.endStreams(); });
}

void ServedLines::stop() {
    disconnect();
    m_idleLists.stop();
    m_sharedContacts.stop();
    for (const auto& [device, line] : lines()) {
        line->stop();
    }
}

void ServedLines::unloadLists(std::chrono::milliseconds idle) const {
    for (const auto& [device, line] : lines()) {
        line->unloadLists(idle);
    }
}

SwitchLink* ServedLines::linkOf(const std::string& switchName) const {
    if (switchName.empty()) {
        return m_links.front().link.get();
    }
    const auto found = std::find_if(m_links.begin(), m_links.end(),
                                    [&](const NamedLink& each) { return each.name == switchName; });
    return found == m_links.end() ? nullptr : found->link.get();
}

std::shared_ptr<ServedLine> ServedLines::make(Configured line) {
    line.settings.sharedLink = linkOf(line.description.switchName);
    line.settings.sharedContacts = &m_sharedContacts.phonebook();
    return std::make_shared<ServedLine>(std::move(line.description), std::move(line.settings),
                                        m_surroundings);
}

std::shared_ptr<ServedLine> ServedLines::line(const std::string& device) const {
    const std::shared_lock lock(m_mutex);
    const auto found = m_lines.find(device);
    return found == m_lines.end() ? nullptr : found->second;
}

ServedLines::Lines ServedLines::lines() const {
    const std::shared_lock lock(m_mutex);
    return m_lines;
}

std::shared_ptr<const Router> ServedLines::find(const std::string& device) {
    const std::shared_ptr<ServedLine> found = line(device);
    std::shared_ptr<LineApi> api = found ? found->api(m_server) : nullptr;
    if (!api) {
        return nullptr;
    }
    const Router& router = api->router();
    return {std::move(api), &router};
}

std::shared_ptr<RemoteLine> ServedLines::remoteLine(const std::string& device) const {
    const std::shared_ptr<ServedLine> found = device.empty() ? m_first : line(device);
    return found ? found->remote() : nullptr;
}

void ServedLines::resync(const Executable& journal) const {
    for (const auto& [device, line] : lines()) {
        if (line->line().journal() == &journal) {
            line->resync();
        }
    }
}

std::optional<std::vector<LineSummary>> ServedLines::list(bool withRemoved) const {
    const auto unviewed = m_rows.unviewed();
    const auto rows = withRemoved ? m_rows.read() : std::vector<LineRow>();
    if (!unviewed || !rows) {
        return std::nullopt;
    }
    const auto unviewedOf = [&unviewed](const std::string& device) {
        const auto found = unviewed->find(device);
        return found == unviewed->end() ? 0 : found->second;
    };
    std::map<std::string, LineSummary> summaries;
    for (const auto& [device, line] : lines()) {
        const ServedLine::Description& description = line->description();
        const CstaLink::Status status = line->line().linkStatus();
        summaries[device] = {.device = device,
                             .name = description.name,
                             .switchName = description.switchName,
                             .isConfigured = description.isConfigured,
                             .isConnected = status.connected,
                             .isMonitored = status.monitoring,
                             .unviewed = unviewedOf(device)};
    }
    for (const LineRow& row : *rows) {
        summaries.try_emplace(row.device, LineSummary{.device = row.device,
                                                      .name = row.name,
                                                      .switchName = row.switchName,
                                                      .isConfigured = false,
                                                      .isRemoved = true,
                                                      .unviewed = unviewedOf(row.device)});
    }
    std::vector<LineSummary> all;
    all.reserve(summaries.size());
    for (auto& [device, summary] : summaries) {
        all.push_back(std::move(summary));
    }
    return all;
}

LineTotals ServedLines::totals() const {
    LineTotals totals;
    std::set<std::string> connected;
    for (const auto& [device, line] : lines()) {
        const CstaLink::Status status = line->line().linkStatus();
        ++totals.lines;
        totals.monitored += status.monitoring ? 1 : 0;
        if (status.connected) {
            const std::string& name = line->description().switchName;
            connected.insert(name.empty() ? m_links.front().name : name);
        }
    }
    totals.switches = m_links.size();
    totals.connectedSwitches = connected.size();
    return totals;
}

std::optional<std::map<std::string, Metrics::LineGauges>> ServedLines::gauges(bool isByLine) const {
    auto stored = m_rows.entries(isByLine);
    const auto unviewed = m_rows.unviewed();
    if (!stored || !unviewed) {
        return std::nullopt;
    }
    std::map<std::string, Metrics::LineGauges> gauges;
    std::size_t monitored = 0;
    const Lines all = lines();
    for (const auto& [device, line] : all) {
        Metrics::LineGauges& values = gauges[isByLine ? device : std::string()];
        const bool isMonitored = line->line().linkStatus().monitoring;
        monitored += isMonitored ? 1 : 0;
        // Of all lines together: all of them are monitored.
        values.isMonitored = isByLine ? isMonitored : monitored == all.size();
        values.liveCallCount += line->line().liveCallCount();
        const auto missed = unviewed->find(device);
        values.unviewed += missed == unviewed->end() ? 0 : missed->second;
    }
    for (auto& [device, values] : gauges) {
        values.entries = std::move((*stored)[device].entries);
        forEachList(
            [&values = values]<typename Item>() { values.entries.try_emplace(ListTraits<Item>::kList); });
    }
    return gauges;
}

ServedLines::Outcome ServedLines::add(const std::string& device, const std::string& name,
                                      const std::string& switchName) {
    const std::lock_guard changing(m_changeMutex);
    if (contains(device)) {
        return Outcome::eExists;
    }
    if (linkOf(switchName) == nullptr) {
        return Outcome::eUnknownSwitch;
    }
    {
        const std::shared_lock lock(m_mutex);
        if (!m_isRunning) {
            return Outcome::eFailed;
        }
    }
    std::shared_ptr<ServedLine> added;
    try {
        added = make(m_settings.added(device, name, switchName));
        added->start();
    } catch (const std::exception& error) {
        logAppUni("Lines", __FILE_NAME__, 2, __LINE__, "line %s cannot be served: %s", device.c_str(),
                  error.what());
        return Outcome::eFailed;
    }
    // Last, so that what is reported as added is there after a restart, and works now.
    if (!m_rows.store({.device = device, .name = name, .switchName = switchName})) {
        return Outcome::eFailed;
    }
    logAppUni("Lines", __FILE_NAME__, 4, __LINE__, "line %s is added", device.c_str());
    const std::unique_lock lock(m_mutex);
    if (m_usesAll) {
        static_cast<void>(added->api(m_server));
    }
    m_lines.emplace(device, std::move(added));
    return Outcome::eDone;
}

ServedLines::Outcome ServedLines::remove(const std::string& device, bool purge) {
    const std::lock_guard changing(m_changeMutex);
    const std::shared_ptr<ServedLine> served = line(device);
    if (!served) {
        return removeStored(device, purge);
    }
    const ServedLine::Description& description = served->description();
    if (description.isConfigured) {
        return Outcome::eConfigured;
    }
    if (!m_rows.store({.device = device,
                       .name = description.name,
                       .switchName = description.switchName,
                       .isRemoved = true})) {
        return Outcome::eFailed;
    }
    {
        const std::unique_lock lock(m_mutex);
        m_lines.erase(device);
    }
    if (m_endClients) {
        m_endClients(device);
    }
    served->stop();
    logAppUni("Lines", __FILE_NAME__, 4, __LINE__, "line %s is removed", device.c_str());
    return !purge || m_rows.purge(device) ? Outcome::eDone : Outcome::eFailed;
}

/// Of a line that is not served.
ServedLines::Outcome ServedLines::removeStored(const std::string& device, bool purge) {
    const auto rows = m_rows.read();
    if (!rows) {
        return Outcome::eFailed;
    }
    const bool isKnown =
        std::any_of(rows->begin(), rows->end(), [&](const LineRow& each) { return each.device == device; });
    if (!purge || !isKnown) {
        return Outcome::eUnknown;
    }
    return m_rows.purge(device) ? Outcome::eDone : Outcome::eFailed;
}

void ServedLines::forEachApi(const std::function<void(LineApi&)>& call) const {
    for (const auto& [device, line] : lines()) {
        if (const std::shared_ptr<LineApi> api = line->usedApi()) {
            call(*api);
        }
    }
}

void ServedLines::useAll() {
    {
        const std::unique_lock lock(m_mutex);
        if (std::exchange(m_usesAll, true)) {
            return;
        }
    }
    for (const auto& [device, line] : lines()) {
        static_cast<void>(line->api(m_server));
    }
}

void ServedLines::keepAlive() {
    forEachApi([](LineApi& api) { api.keepAlive(); });
}

bool ServedLines::endRefused() {
    bool isAnyLeft = false;
    forEachApi([&isAnyLeft](LineApi& api) { isAnyLeft = api.endRefused() || isAnyLeft; });
    return isAnyLeft;
}

std::size_t ServedLines::streamCount() const {
    std::size_t count = 0;
    forEachApi([&count](const LineApi& api) { count += api.streamCount(); });
    return count;
}

}  // namespace host
