#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/http/Metrics.h"

namespace host {

class Router;

/// A line for the list of lines.
struct LineSummary {
    std::string device;
    /// Whose telephone it is; may be empty.
    std::string name{};
    /// The name of its switch; empty for the only one.
    std::string switchName{};
    /// True if the configuration names it; else it was added while the program ran.
    bool isConfigured = true;
    bool isConnected = false;
    bool isMonitored = false;
    /// True for a line that is served no more, but whose calls are kept.
    bool isRemoved = false;
    /// Missed entries that are not viewed.
    std::size_t unviewed = 0;
};

/// The totals of all lines.
struct LineTotals {
    std::size_t lines = 0;
    std::size_t monitored = 0;
    std::size_t switches = 0;
    std::size_t connectedSwitches = 0;
};

/// The lines that the HTTP API serves. Thread-safe.
class ServedLinesIfc {
public:
    ServedLinesIfc() = default;
    virtual ~ServedLinesIfc() = default;
    ServedLinesIfc(const ServedLinesIfc&) = delete;
    ServedLinesIfc& operator=(const ServedLinesIfc&) = delete;

    /// The routes of a line, which is not stopped as long as the result lives: keep it for one request only.
    /// nullptr if there is no such line.
    [[nodiscard]] virtual std::shared_ptr<const Router> find(const std::string& device) = 0;
    /// The device of the first line of the configuration.
    [[nodiscard]] virtual const std::string& first() const = 0;
    /// True for a line that is served.
    [[nodiscard]] virtual bool contains(const std::string& device) const = 0;

    /// The lines in the order of their devices, with those that were removed if `withRemoved`. std::nullopt
    /// if the database fails.
    [[nodiscard]] virtual std::optional<std::vector<LineSummary>> list(bool withRemoved) const = 0;
    [[nodiscard]] virtual LineTotals totals() const = 0;
    /// The values for the metrics: by device, or for all lines together. std::nullopt if the database fails.
    [[nodiscard]] virtual std::optional<std::map<std::string, Metrics::LineGauges>> gauges(
        bool isByLine) const = 0;

    enum class Outcome { eDone, eExists, eUnknown, eConfigured, eUnknownSwitch, eFailed };

    /// Adds a line and serves it; `name` may be empty, and `switchName` names a switch of the configuration
    /// (empty for the first). The calls of a line that was removed are there again. eExists, eUnknownSwitch
    /// or eFailed if it cannot be.
    [[nodiscard]] virtual Outcome add(const std::string& device, const std::string& name,
                                      const std::string& switchName) = 0;
    /// Ends a line and keeps its calls; with `purge`, deletes everything that is stored of it, also of one
    /// that was removed before. eUnknown, eConfigured for a line of the configuration, or eFailed.
    [[nodiscard]] virtual Outcome remove(const std::string& device, bool purge) = 0;

    /// Makes the API of each line, also of each one that is added later, so that it publishes its events.
    virtual void useAll() = 0;

    // For the loop thread of the server.

    /// Calls `keepAlive` of each API that was used.
    virtual void keepAlive() = 0;
    /// Calls `endRefused` of each; true if one returns true.
    [[nodiscard]] virtual bool endRefused() = 0;
    /// The number of open event streams of all lines.
    [[nodiscard]] virtual std::size_t streamCount() const = 0;
};

}  // namespace host
