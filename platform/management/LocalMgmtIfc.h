#pragma once

#include <string>

class ManageableData;
class MgmtAgentIfc;

/// The phone's settings: keys with text values. Registered as "LocalMgmtIfc". Thread-safe: the implementation
/// synchronises, and never calls an agent from inside one of these operations.
class LocalMgmtIfc {
public:
    LocalMgmtIfc() = default;
    LocalMgmtIfc(const LocalMgmtIfc&) = delete;
    LocalMgmtIfc& operator=(const LocalMgmtIfc&) = delete;
    virtual ~LocalMgmtIfc() = default;

    /// Registers `agent` as `identifier` ("JournalMgmtId") to serve its own keys. The agent is borrowed until
    /// `unregisterAgent`. `version` is the agent's own, which an implementation may ignore. Returns false if
    /// another agent has the identifier.
    virtual bool registerAgent(const std::string& identifier, MgmtAgentIfc& agent, int version) = 0;
    /// Removes the agent and its observations; no notification reaches it afterwards.
    virtual void unregisterAgent(MgmtAgentIfc& agent) = 0;
    /// Notifies `agent` through `manageableDataChanged` whenever the value of `tag` changes. Returns false if
    /// the key cannot be observed.
    virtual bool observe(const std::string& tag, MgmtAgentIfc& agent) = 0;

    /// Fills in the values of the keys in `data`; false if a key has none.
    virtual bool read(ManageableData& data) = 0;
    /// Stores the values in `data`; false, with reject reasons, if one is refused.
    virtual bool write(ManageableData& data) = 0;
    /// Reports that keys of an agent now have the values in `data`.
    virtual void publish(const ManageableData& data) = 0;
};
