#pragma once

#include <map>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "platform/framework/Executable.h"
#include "platform/management/LocalMgmtIfc.h"
#include "platform/management/ManageableData.h"
#include "platform/management/MgmtAgentIfc.h"

namespace journaltest {

/// The phone's settings as a table that a test fills; register it as "LocalMgmtIfc".
///
/// Every key may be written, and observed unless the test refuses it. Any thread may call the operations of
/// `LocalMgmtIfc`; agents are notified on the thread that calls `change`, with no lock held.
class FakeLocalMgmt final : public Executable, public LocalMgmtIfc {
public:
    /// Sets a value without a notification.
    void set(const std::string& key, const std::string& value) {
        const std::lock_guard lock(m_mutex);
        m_values[key] = value;
    }
    void remove(const std::string& key) {
        const std::lock_guard lock(m_mutex);
        m_values.erase(key);
    }
    /// Sets a value and notifies the agents that observe the key.
    void change(const std::string& key, const std::string& value) {
        set(key, value);
        std::unique_lock lock(m_mutex);
        const std::vector<Observation> observations = m_observations;
        lock.unlock();
        ManageableData data;
        data.populate(key, key, value);
        for (const auto& [observed, agent] : observations) {
            if (observed == key) {
                agent->manageableDataChanged(data);
            }
        }
    }
    /// From now on `key` cannot be observed.
    void refuseObserving(const std::string& key) { m_refused = key; }

    /// The agents that were registered by identifier and version, "JournalMgmtId 1", one after the other.
    [[nodiscard]] const std::string& registrations() const { return m_registrations; }
    /// The stored and the published values, oldest first: "key=value; key=value".
    [[nodiscard]] const std::string& written() const { return m_written; }
    [[nodiscard]] const std::string& published() const { return m_published; }

    bool registerAgent(const std::string& identifier, MgmtAgentIfc& /*agent*/, int version) override {
        const std::lock_guard lock(m_mutex);
        m_registrations += identifier + " " + std::to_string(version);
        return true;
    }
    void unregisterAgent(MgmtAgentIfc& agent) override {
        const std::lock_guard lock(m_mutex);
        std::erase_if(m_observations, [&agent](const Observation& each) { return each.second == &agent; });
    }
    bool observe(const std::string& tag, MgmtAgentIfc& agent) override {
        const std::lock_guard lock(m_mutex);
        if (tag != m_refused) {
            m_observations.emplace_back(tag, &agent);
        }
        return tag != m_refused;
    }
    bool read(ManageableData& data) override {
        const std::lock_guard lock(m_mutex);
        bool complete = true;
        const std::vector<std::string> keys = data.getRootIds();
        for (const std::string& key : keys) {
            const auto found = m_values.find(key);
            complete = complete && found != m_values.end();
            if (found != m_values.end()) {
                data.populate(key, key, found->second);
            }
        }
        return complete;
    }
    bool write(ManageableData& data) override {
        const std::lock_guard lock(m_mutex);
        addTo(m_written, data);
        for (const std::string& key : data.getRootIds()) {
            m_values[key] = data.interogate(key)->getValue();
        }
        return true;
    }
    void publish(const ManageableData& data) override {
        const std::lock_guard lock(m_mutex);
        addTo(m_published, data);
    }

private:
    using Observation = std::pair<std::string, MgmtAgentIfc*>;

    static void addTo(std::string& text, const ManageableData& data) {
        for (const std::string& key : data.getRootIds()) {
            text += (text.empty() ? "" : "; ") + key + "=" + data.interogate(key)->getValue();
        }
    }

    // Guarded by m_mutex. The test reads the records when no other thread may call.
    std::mutex m_mutex;
    std::map<std::string, std::string> m_values;
    std::string m_refused;
    std::vector<Observation> m_observations;
    std::string m_registrations;
    std::string m_written;
    std::string m_published;
};

}  // namespace journaltest
