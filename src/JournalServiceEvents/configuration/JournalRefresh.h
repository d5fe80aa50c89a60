#pragma once

#include <functional>
#include <string>
#include <utility>

class ObserverNotifierIfc;

namespace journal {

class PlatformServices;
class JournalLists;
class PhoneValues;
class JournalSettings;
class PhoneSettings;

/// Brings lists and settings up to date with the database, and the user's data back to the defaults.
/// Any thread may call.
class JournalRefresh {
public:
    struct Parts {
        PlatformServices& platform;
        PhoneSettings& settings;
        JournalSettings& ownSettings;
        PhoneValues& management;
        JournalLists& lists;
        ObserverNotifierIfc& notifier;
    };

    /// The parts are borrowed and outlive this one. `loadLists` loads all lists in the way of the service variant.
    JournalRefresh(const Parts& parts, std::function<void()> loadLists)
        : m_parts(parts), m_loadLists(std::move(loadLists)) {}

    bool refreshCallLists();
    bool refreshCallLog();
    /// The user of the phone, or his data, changed: everything is loaded and told anew.
    void reloadEverything();
    bool resetUserData();
    bool setJournalServiceCallLogEventsDisabling(const std::string& value);

private:
    Parts m_parts;
    std::function<void()> m_loadLists;
};

}  // namespace journal
