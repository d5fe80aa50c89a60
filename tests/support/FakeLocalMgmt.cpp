#include "tests/support/FakeLocalMgmt.h"

#include <algorithm>

#include "platform/management/MgmtAgentIfc.h"

namespace journaltest {

void FakeLocalMgmt::set(const std::string& key, const std::string& value) {
    const std::lock_guard lock(m_mutex);
    m_values[key] = value;
}

void FakeLocalMgmt::remove(const std::string& key) {
    const std::lock_guard lock(m_mutex);
    m_values.erase(key);
}

void FakeLocalMgmt::change(const std::string& key, const std::string& value) {
    std::vector<MgmtAgentIfc*> agents;
    {
        const std::lock_guard lock(m_mutex);
        m_values[key] = value;
        for (const Observation& observation : m_observations) {
            if (observation.key == key) {
                agents.push_back(observation.agent);
            }
        }
    }
    for (MgmtAgentIfc* const agent : agents) {
        ManageableData data;
        data.populate(key, key, value);
        agent->manageableDataChanged(data);
    }
}

void FakeLocalMgmt::refuseWrite(const std::string& key, const RejectReason& reason) {
    const std::lock_guard lock(m_mutex);
    m_refusedWrites[key] = reason;
}

void FakeLocalMgmt::refuseObserving(const std::string& key) {
    const std::lock_guard lock(m_mutex);
    m_refusedObservations.push_back(key);
}

void FakeLocalMgmt::refuseAgents() {
    const std::lock_guard lock(m_mutex);
    m_refuseAgents = true;
}

std::optional<std::string> FakeLocalMgmt::value(const std::string& key) const {
    const std::lock_guard lock(m_mutex);
    const auto found = m_values.find(key);
    return found == m_values.end() ? std::nullopt : std::optional(found->second);
}

std::vector<std::string> FakeLocalMgmt::observedBy(const MgmtAgentIfc& agent) const {
    const std::lock_guard lock(m_mutex);
    std::vector<std::string> keys;
    for (const Observation& observation : m_observations) {
        if (observation.agent == &agent) {
            keys.push_back(observation.key);
        }
    }
    return keys;
}

std::vector<FakeLocalMgmt::Registration> FakeLocalMgmt::registrations() const {
    const std::lock_guard lock(m_mutex);
    return m_registrations;
}

std::vector<ManageableData> FakeLocalMgmt::written() const {
    const std::lock_guard lock(m_mutex);
    return m_written;
}

std::vector<ManageableData> FakeLocalMgmt::published() const {
    const std::lock_guard lock(m_mutex);
    return m_published;
}

bool FakeLocalMgmt::registerAgent(const std::string& identifier, MgmtAgentIfc& agent, int version) {
    const std::lock_guard lock(m_mutex);
    if (m_refuseAgents) {
        return false;
    }
    m_registrations.push_back({identifier, &agent, version});
    return true;
}

void FakeLocalMgmt::unregisterAgent(MgmtAgentIfc& agent) {
    const std::lock_guard lock(m_mutex);
    const auto ofAgent = [&agent](const auto& entry) { return entry.agent == &agent; };
    m_registrations.erase(std::remove_if(m_registrations.begin(), m_registrations.end(), ofAgent),
                          m_registrations.end());
    m_observations.erase(std::remove_if(m_observations.begin(), m_observations.end(), ofAgent),
                         m_observations.end());
}

bool FakeLocalMgmt::observe(const std::string& tag, MgmtAgentIfc& agent) {
    const std::lock_guard lock(m_mutex);
    if (std::count(m_refusedObservations.begin(), m_refusedObservations.end(), tag) > 0) {
        return false;
    }
    m_observations.push_back({tag, &agent});
    return true;
}

bool FakeLocalMgmt::read(ManageableData& data) {
    const std::lock_guard lock(m_mutex);
    bool complete = true;
    const std::vector<std::string> keys = data.getRootIds();
    for (const std::string& key : keys) {
        const auto found = m_values.find(key);
        if (found == m_values.end()) {
            complete = false;
        } else {
            data.populate(key, key, found->second);
        }
    }
    return complete;
}

bool FakeLocalMgmt::write(ManageableData& data) {
    const std::lock_guard lock(m_mutex);
    bool stored = true;
    for (const std::string& key : data.getRootIds()) {
        const auto refused = m_refusedWrites.find(key);
        if (refused != m_refusedWrites.end()) {
            data.addRejectReason(key, refused->second);
            stored = false;
        } else if (const DataNode* const node = data.interogate(key)) {
            m_values[key] = node->getValue();
        }
    }
    m_written.push_back(data);
    return stored;
}

void FakeLocalMgmt::publish(const ManageableData& data) {
    const std::lock_guard lock(m_mutex);
    m_published.push_back(data);
}

}  // namespace journaltest
