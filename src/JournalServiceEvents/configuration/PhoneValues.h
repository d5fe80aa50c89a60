#pragma once

#include <string>

class ManageableData;
class MgmtAgentIfc;

namespace journal {

struct CallLogReadiness;
class PlatformServices;
class CstaMonitors;
class PhoneSettings;

/// Reads the phone's management values into the settings, and publishes the journal's own settings to the
/// management. Without a local management it does neither, and the settings keep their defaults.
///
/// Threads: call `initEvents` and `readLocalMgmtData` at start-up and from the thread on which the management
/// delivers its notifications. The const operations are thread-safe.
class PhoneValues {
public:
    /// Groups of values that are read together; a bit mask.
    enum Group : unsigned { eTimeZone = 1, eDaylightSaving = 2, eSystem = 4, eAllGroups = 7 };

    /// Everything is borrowed and outlives this object.
    PhoneValues(const PlatformServices& platform, PhoneSettings& settings, CstaMonitors& monitors,
                CallLogReadiness& readiness)
        : m_platform(platform), m_settings(settings), m_monitors(monitors), m_readiness(readiness) {}

    /// Observes every key for `agent` and reads every group.
    void initEvents(MgmtAgentIfc& agent);
    /// `groups` is a mask of `Group`.
    void readLocalMgmtData(unsigned groups);
    /// Returns false and leaves `value` unchanged if the key has no value.
    bool getUlmoValue(const char* tagName, std::string& value) const;
    [[nodiscard]] bool isVoiceMailNumber(std::string number) const;

    void publishManageableDataChange(const char* key, const char* value) const;
    void publishCallLogEnableState() const;
    void publishMissedLoggingState() const;
    void publishDeleteMissedWhenCalledState() const;
    /// Writes one of the phone's own values.
    void writeValue(const char* key, const char* value) const;

private:
    void observeManageableData(const char* tagName, MgmtAgentIfc& agent) const;
    void readSystemGroup();

    const PlatformServices& m_platform;
    PhoneSettings& m_settings;
    CstaMonitors& m_monitors;
    CallLogReadiness& m_readiness;
};

/// The journal's own settings in the form that the management uses. "missed-logging" is inverted: "1" means
/// that missed calls that were answered elsewhere are not logged. "delete-missed-when-called" is not
/// inverted.
namespace managementvalue {
[[nodiscard]] inline const char* enabled(bool callLogEnabled) {
    return callLogEnabled ? "true" : "false";
}
[[nodiscard]] inline const char* missedLogging(bool logged) {
    return logged ? "0" : "1";
}
[[nodiscard]] inline const char* deleteWhenCalled(bool deleted) {
    return deleted ? "1" : "0";
}
}  // namespace managementvalue

}  // namespace journal
