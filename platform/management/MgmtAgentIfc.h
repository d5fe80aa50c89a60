#pragma once

class ManageableData;

/// A service that offers settings of its own to the local management and hears of changes to others' settings.
class MgmtAgentIfc {
public:
    MgmtAgentIfc() = default;
    MgmtAgentIfc(const MgmtAgentIfc&) = delete;
    MgmtAgentIfc& operator=(const MgmtAgentIfc&) = delete;
    virtual ~MgmtAgentIfc() = default;

    /// Takes the values of the keys in `data`; false and a reject reason per refused key. Any thread.
    virtual bool setData(ManageableData& data) = 0;
    /// Fills in the values of the keys in `data`; false when a key is not the agent's. Any thread.
    virtual bool getData(ManageableData& data) = 0;
    /// An observed key has the value in `data`. The line's strand.
    virtual void manageableDataChanged(ManageableData& data) = 0;
    /// Brings the agent's user data back to the defaults. Any thread.
    virtual bool resetUserData() = 0;
};
