#pragma once

#include <string>

#include "platform/management/RejectReasons.h"
#include "platform/sync/Semaphore.h"

class CallListDatabaseAdapter;

namespace journal {

struct SettingsSnapshot;
class JournalLists;
class PhoneSettings;

/// The three settings that the journal keeps itself, in the settings record of the database.
///
/// Threads: any. Reads and updates of the record are taken over one after the other.
class JournalSettings {
public:
    /// The parts are borrowed and outlive this one.
    JournalSettings(PhoneSettings& settings, CallListDatabaseAdapter& adapter, JournalLists& lists)
        : m_settings(settings), m_adapter(adapter), m_lists(lists) {}

    /// Reads the three settings; on a SIP phone, those that were never stored are stored with their defaults.
    void readConfigItemsFromDB();

    // Each stores a value ("true", "false", "1", "0") and takes it over. True when the setting really changed; a
    // value that is the present one is refused with a reason.
    bool updateEnabledState(const std::string& value, RejectReason& reason);
    bool updateMissedLoggingState(const std::string& value, RejectReason& reason);
    bool updateDeleteMissedWhenCalledState(const std::string& value, RejectReason& reason);

    /// Empties the journal when the call log is off.
    void handleEnabledStateChange();

private:
    /// A setting by the member that holds it.
    using Member = bool SettingsSnapshot::*;

    struct Own;
    static const Own kOwn[];

    /// Writes to the record, whose lock the caller holds; false when the database refuses.
    [[nodiscard]] bool store(const char* key, const std::string& value);
    bool updateBoolConfigItem(Member member, const char* key, const std::string& value);
    bool update(Member member, const char* key, const std::string& value, RejectReason& reason);
    bool readItem(const std::string& response, const char* key, Member member);

    PhoneSettings& m_settings;
    CallListDatabaseAdapter& m_adapter;
    JournalLists& m_lists;

    /// Held from asking the database until its answer is taken over, so that memory and record agree.
    Semaphore m_recordLock{1, 1, true};
};

}  // namespace journal
