#pragma once

#include <atomic>
#include <string>

#include "platform/management/RejectReasons.h"
#include "platform/sync/Semaphore.h"

class ManageableData;

namespace journal {

class CstaMonitors;
class JournalPolicy;
class JournalLists;
class JournalRefresh;
class PhoneValues;
class JournalSettings;
class PhoneSettings;

/// The journal's face to the phone's management: takes and gives the journal's own settings, and follows the values
/// that it observes.
class ManagementAgent {
public:
    struct Parts {
        PhoneSettings& settings;
        JournalSettings& ownSettings;
        PhoneValues& management;
        CstaMonitors& monitors;
        JournalPolicy& gate;
        JournalLists& lists;
        JournalRefresh& refresh;
        std::atomic<bool>& visitorCallLogSavePending;
    };

    /// The parts are borrowed and outlive this one.
    explicit ManagementAgent(const Parts& parts) : m_parts(parts) {}
    ManagementAgent(const ManagementAgent&) = delete;
    ManagementAgent& operator=(const ManagementAgent&) = delete;
    ~ManagementAgent() = default;

    /// Any thread. The result is that of the last key which set one, not of all keys together.
    bool setData(ManageableData& data);
    /// Any thread. False once a key is not the journal's; keys after it are not answered.
    bool getData(ManageableData& data);
    /// The thread on which the management delivers its notifications.
    void manageableDataChanged(ManageableData& data);

private:
    bool setKey(const std::string& key, const std::string& value, RejectReason& reason, bool result);
    bool setInvertible(const std::string& key, const std::string& value, const char* trueForm,
                       bool (JournalSettings::*update)(const std::string&, RejectReason&),
                       RejectReason& reason);
    void clearCallLog();
    void followCallLogState(const std::string& state);
    void allowCallLog();
    void disableCallLog();
    void followBluetooth(bool on);

    Parts m_parts;
    Semaphore m_configLock{1, 1, false};
};

}  // namespace journal
