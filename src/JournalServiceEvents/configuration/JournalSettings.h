#pragma once

#include <string>

#include "platform/management/RejectReasons.h"
#include "platform/sync/Semaphore.h"

class CallListDatabaseAdapter;

namespace journal {

struct SettingsSnapshot;
class ListDeletion;
class PhoneSettings;

/// The journal's own three settings, stored in the settings record of the database.
///
/// Thread-safe: reads and updates of the record are serialised.
class JournalSettings {
public:
    /// Everything is borrowed and outlives this object.
    JournalSettings(PhoneSettings& settings, CallListDatabaseAdapter& adapter, ListDeletion& deletion)
        : m_settings(settings), m_adapter(adapter), m_deletion(deletion) {}

    /// Reads the three settings. On a SIP phone, stores the default of each setting that was never stored.
    void readConfigItemsFromDB();

    // Each stores and applies a value ("true", "false", "1", "0"). Returns true if the setting changed.
    // Rejects the current value with a reason.
    bool updateEnabledState(const std::string& value, RejectReason& reason);
    bool updateMissedLoggingState(const std::string& value, RejectReason& reason);
    bool updateDeleteMissedWhenCalledState(const std::string& value, RejectReason& reason);

    /// Empties the call lists if the call log is off.
    void handleEnabledStateChange();

private:
    /// A setting, by the member that holds it.
    using Member = bool SettingsSnapshot::*;

    struct SettingDescriptor;
    static const SettingDescriptor kOwnSettings[];

    /// Writes to the record; false if the database rejects it. Requires: the record lock is held.
    [[nodiscard]] bool store(const char* key, const std::string& value);
    bool updateBoolConfigItem(Member member, const char* key, const std::string& value);
    bool update(Member member, const char* key, const std::string& value, RejectReason& reason);
    bool readItem(const std::string& response, const char* key, Member member);

    PhoneSettings& m_settings;
    CallListDatabaseAdapter& m_adapter;
    ListDeletion& m_deletion;

    /// Held from the request to the database until its response is applied, so that memory and record agree.
    Semaphore m_recordLock{1, 1, true};
};

}  // namespace journal
