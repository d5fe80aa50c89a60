#pragma once

class ManageableData;

/// A service that provides settings of its own to the local management and observes others' settings.
class MgmtAgentIfc {
public:
    MgmtAgentIfc() = default;
    MgmtAgentIfc(const MgmtAgentIfc&) = delete;
    MgmtAgentIfc& operator=(const MgmtAgentIfc&) = delete;
    virtual ~MgmtAgentIfc() = default;

    /// Applies the values of the keys in `data`; false, with a reject reason for each refused key. Any
    /// thread.
    virtual bool setData(ManageableData& data) = 0;
    /// Fills in the values of the keys in `data`; false if a key is not the agent's. Any thread.
    virtual bool getData(ManageableData& data) = 0;
    /// An observed key has the value in `data`. Called on the line's strand.
    virtual void manageableDataChanged(ManageableData& data) = 0;
    /// Resets the agent's user data to the defaults. Any thread.
    virtual bool resetUserData() = 0;
};
