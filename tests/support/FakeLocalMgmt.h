#pragma once

#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "platform/framework/Executable.h"
#include "platform/management/LocalMgmtIfc.h"
#include "platform/management/ManageableData.h"

namespace journaltest {

/// The phone's settings as a table that a test fills; register it as "LocalMgmtIfc".
///
/// Every key may be observed and written unless the test says otherwise. Any thread may call; agents are told on
/// the thread of the one who calls `change`, with no lock held.
class FakeLocalMgmt final : public Executable, public LocalMgmtIfc {
public:
    struct Registration {
        std::string identifier;
        MgmtAgentIfc* agent = nullptr;
        int version = 0;
    };

    /// Sets a value without telling anybody.
    void set(const std::string& key, const std::string& value);
    void remove(const std::string& key);
    /// Sets a value and tells the agents that observe the key.
    void change(const std::string& key, const std::string& value);
    /// From now on writing `key` is refused, with the given reason.
    void refuseWrite(const std::string& key, const RejectReason& reason);
    /// From now on `key` cannot be observed.
    void refuseObserving(const std::string& key);
    /// From now on nobody can register as agent.
    void refuseAgents();

    [[nodiscard]] std::optional<std::string> value(const std::string& key) const;
    /// The keys that `agent` observes, in the order in which it asked.
    [[nodiscard]] std::vector<std::string> observedBy(const MgmtAgentIfc& agent) const;
    [[nodiscard]] std::vector<Registration> registrations() const;
    /// The records that were handed in, oldest first; a write that was refused in part is among them.
    [[nodiscard]] std::vector<ManageableData> written() const;
    [[nodiscard]] std::vector<ManageableData> published() const;

    bool registerAgent(const std::string& identifier, MgmtAgentIfc& agent, int version) override;
    void unregisterAgent(MgmtAgentIfc& agent) override;
    bool observe(const std::string& tag, MgmtAgentIfc& agent) override;
    bool read(ManageableData& data) override;
    bool write(ManageableData& data) override;
    void publish(const ManageableData& data) override;

private:
    struct Observation {
        std::string key;
        MgmtAgentIfc* agent = nullptr;
    };

    // Guarded by m_mutex.
    mutable std::mutex m_mutex;
    std::map<std::string, std::string> m_values;
    std::map<std::string, RejectReason> m_refusedWrites;
    std::vector<std::string> m_refusedObservations;
    bool m_refuseAgents = false;
    std::vector<Registration> m_registrations;
    std::vector<Observation> m_observations;
    std::vector<ManageableData> m_written;
    std::vector<ManageableData> m_published;
};

}  // namespace journaltest
