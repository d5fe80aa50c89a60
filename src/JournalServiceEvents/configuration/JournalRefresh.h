#pragma once

#include <string>

namespace journal {

class PlatformServices;
class JournalLists;
class ListDeletion;
class ListSourceIfc;
class PhoneValues;
class JournalSettings;
class PhoneSettings;

/// Reloads lists and settings from the database, and resets the user's data to the defaults. Thread-safe.
class JournalRefresh {
public:
    /// Everything is borrowed and outlives this object.
    JournalRefresh(const PlatformServices& platform, PhoneSettings& settings,
                   JournalSettings& journalSettings, const PhoneValues& phoneValues, JournalLists& lists,
                   ListDeletion& deletion, ListSourceIfc& source)
        : m_platform(platform),
          m_settings(settings),
          m_journalSettings(journalSettings),
          m_phoneValues(phoneValues),
          m_lists(lists),
          m_deletion(deletion),
          m_source(source) {}

    // All of these return true.
    bool refreshCallLists();
    bool refreshCallLog();
    /// Empties the call lists; on a SIP phone also resets the journal's own settings and publishes those that
    /// change.
    bool resetUserData();
    /// "true" while an outside call server journals missed calls itself.
    bool setJournalServiceCallLogEventsDisabling(const std::string& value);

    /// Loads everything and notifies observers, the management and the unified-communications service. Call
    /// when the phone's user or the user's data changed.
    void reloadEverything();

private:
    const PlatformServices& m_platform;
    PhoneSettings& m_settings;
    JournalSettings& m_journalSettings;
    const PhoneValues& m_phoneValues;
    JournalLists& m_lists;
    ListDeletion& m_deletion;
    ListSourceIfc& m_source;
};

}  // namespace journal
