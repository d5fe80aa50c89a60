#pragma once

#include <string>

#include "platform/management/RejectReasons.h"
#include "platform/sync/Semaphore.h"

class ManageableData;

namespace journal {

class CstaMonitors;
class JournalPolicy;
class ListDeletion;
class JournalRefresh;
class PhoneValues;
class JournalSettings;
class PhoneSettings;
class VisitorCallLog;

/// The management interface of the journal: sets and returns the journal's own settings, and applies changes
/// of the management values that the journal observes.
///
/// Threads: `setData` and `getData` are thread-safe. Call `manageableDataChanged` from the thread on which
/// the management delivers its notifications.
class ManagementAgent {
public:
    /// Everything is borrowed and outlives this object.
    ManagementAgent(PhoneSettings& settings, JournalSettings& journalSettings, PhoneValues& phoneValues,
                    CstaMonitors& monitors, JournalPolicy& policy, ListDeletion& deletion,
                    JournalRefresh& refresh, VisitorCallLog& visitorCallLog)
        : m_settings(settings),
          m_journalSettings(journalSettings),
          m_phoneValues(phoneValues),
          m_monitors(monitors),
          m_policy(policy),
          m_deletion(deletion),
          m_refresh(refresh),
          m_visitorCallLog(visitorCallLog) {}
    ManagementAgent(const ManagementAgent&) = delete;
    ManagementAgent& operator=(const ManagementAgent&) = delete;
    ~ManagementAgent() = default;

    /// Returns the result of the last key that has one, not of all keys together. Adds a reject reason for
    /// each rejected key.
    bool setData(ManageableData& data);
    /// Fills in the values. Stops filling in values at the first unknown key and returns false.
    bool getData(ManageableData& data);
    void manageableDataChanged(ManageableData& data);

private:
    bool setKey(const std::string& key, const std::string& value, RejectReason& reason, bool result);
    bool setFlag(const std::string& key, const std::string& value, const char* trueValue,
                 bool (JournalSettings::*update)(const std::string&, RejectReason&), RejectReason& reason);
    void clearCallLog();
    void applyCallLogState(const std::string& state);
    void allowCallLog();
    void disableCallLog();
    void applyBluetoothState(bool on);

    PhoneSettings& m_settings;
    JournalSettings& m_journalSettings;
    PhoneValues& m_phoneValues;
    CstaMonitors& m_monitors;
    JournalPolicy& m_policy;
    ListDeletion& m_deletion;
    JournalRefresh& m_refresh;
    VisitorCallLog& m_visitorCallLog;

    // Serialises setData and getData.
    Semaphore m_configLock{1, 1, false};
};

}  // namespace journal
