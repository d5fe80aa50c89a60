#pragma once

#include <map>
#include <memory>
#include <string>
#include <utility>

#include "host/http/LineApi.h"
#include "host/http/ServedLinesIfc.h"
#include "host/http/messages/Router.h"

namespace journaltest {

/// Lines with given routes, which are all monitored. The first one that is added is the default.
class FakeLines final : public host::ServedLinesIfc {
public:
    void set(const std::string& device, std::shared_ptr<const host::Router> router) {
        m_first = m_lines.empty() ? device : m_first;
        m_lines[device] = std::move(router);
    }
    /// Gets the heartbeats; borrowed, null for none.
    void setApi(host::LineApi* api) { m_api = api; }

    [[nodiscard]] std::shared_ptr<const host::Router> find(const std::string& device) override {
        const auto found = m_lines.find(device);
        return found == m_lines.end() ? nullptr : found->second;
    }
    [[nodiscard]] const std::string& first() const override { return m_first; }
    [[nodiscard]] bool contains(const std::string& device) const override { return m_lines.contains(device); }
    [[nodiscard]] std::optional<std::vector<host::LineSummary>> list(bool /*withRemoved*/) const override {
        std::vector<host::LineSummary> lines;
        for (const auto& [device, router] : m_lines) {
            lines.push_back({.device = device});
        }
        return lines;
    }
    [[nodiscard]] host::LineTotals totals() const override {
        return {.lines = m_lines.size(), .monitored = m_lines.size()};
    }
    [[nodiscard]] std::optional<std::map<std::string, host::Metrics::LineGauges>> gauges(
        bool /*isByLine*/) const override {
        return std::map<std::string, host::Metrics::LineGauges>();
    }
    [[nodiscard]] Outcome add(const std::string& device, const std::string& /*name*/,
                              const std::string& /*switchName*/) override {
        return m_lines.emplace(device, std::make_shared<host::Router>()).second ? Outcome::eDone
                                                                                : Outcome::eExists;
    }
    [[nodiscard]] Outcome remove(const std::string& device, bool /*purge*/) override {
        return m_lines.erase(device) > 0 ? Outcome::eDone : Outcome::eUnknown;
    }
    void useAll() override {}
    void keepAlive() override {
        if (m_api != nullptr) {
            m_api->keepAlive();
        }
    }
    [[nodiscard]] bool endRefused() override { return m_api != nullptr && m_api->endRefused(); }
    [[nodiscard]] std::size_t streamCount() const override {
        return m_api == nullptr ? 0 : m_api->streamCount();
    }

private:
    std::string m_first;
    std::map<std::string, std::shared_ptr<const host::Router>> m_lines;
    host::LineApi* m_api = nullptr;
};

}  // namespace journaltest
