#pragma once

#include <string>

class ManageableData;
class MgmtAgentIfc;

/// The phone's settings: keys with text values. Registered as "LocalMgmtIfc". Threads: any thread may call; the
/// implementation synchronises and never calls an agent from inside one of these operations.
class LocalMgmtIfc {
public:
    LocalMgmtIfc() = default;
    LocalMgmtIfc(const LocalMgmtIfc&) = delete;
    LocalMgmtIfc& operator=(const LocalMgmtIfc&) = delete;
    virtual ~LocalMgmtIfc() = default;

    /// Makes `agent` the one that serves its own keys, known as `identifier` ("JournalMgmtId"). The agent is borrowed
    /// until `unregisterAgent`. `version` is the agent's own, which a management may ignore. False when another agent has
    /// the identifier.
    virtual bool registerAgent(const std::string& identifier, MgmtAgentIfc& agent, int version) = 0;
    /// Forgets the agent with everything that it observes; no notification reaches it afterwards.
    virtual void unregisterAgent(MgmtAgentIfc& agent) = 0;
    /// `agent` is told through `manageableDataChanged` whenever the value of `tag` changes. False when the key
    /// cannot be observed.
    virtual bool observe(const std::string& tag, MgmtAgentIfc& agent) = 0;

    /// Fills in the value of the keys in `data`; false when a key has none.
    virtual bool read(ManageableData& data) = 0;
    /// Stores the values in `data`; false and reject reasons when one is refused.
    virtual bool write(ManageableData& data) = 0;
    /// Tells the management that keys which an agent serves now have the values in `data`.
    virtual void publish(const ManageableData& data) = 0;
};
