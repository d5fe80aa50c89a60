#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>

namespace journal {

/// The configuration of the journal at one moment. A plain value.
struct SettingsSnapshot {
    // The journal's own settings, kept in the settings record of the database.
    bool m_callLogEnabled = true;
    bool m_missedLogging = true;
    bool m_deleteMissedWhenCalled = false;

    // Values of the local management.
    std::int32_t m_tzOffset = 0;
    std::int32_t m_daylightSaveMinutes = 0;
    std::int32_t m_systemIdentifier = 0;
    std::string m_softwareType;
    std::string m_callLogControl;
    std::string m_regNumber;
    bool m_serverBasedFeatures = false;
    bool m_wsiAllowUcJournal = false;
    bool m_ForwardingPartyDisplayLast = true;
    bool m_ringCentralSyncCallLog = false;
    bool m_btHwOn = false;

    // Derived from m_systemIdentifier: 2 is server call-log mode, 1 waits for the switch to mark missed
    // calls.
    bool m_useCSTACallControlEvents = false;
    bool m_serverBasedCallLog = false;
    bool m_enterMarkedMissedCall = false;

    /// True if an outside call server journals missed calls itself.
    bool m_xsiConfigured = false;

    /// True if the rules of a SIP phone apply. Every other software type, an empty one included, is not SIP.
    [[nodiscard]] bool isSip() const;
    [[nodiscard]] bool isQorvex() const;
    void deriveEventModes();
};

/// The configuration values that the other components read.
///
/// Thread-safe. A reader gets an immutable snapshot, so that a decision that uses two values has both from
/// one moment; the snapshot stays valid for as long as it is held.
class PhoneSettings {
public:
    using Snapshot = std::shared_ptr<const SettingsSnapshot>;

    PhoneSettings() : m_values(std::make_shared<const SettingsSnapshot>()) {}
    PhoneSettings(const PhoneSettings&) = delete;
    PhoneSettings& operator=(const PhoneSettings&) = delete;
    ~PhoneSettings() = default;

    [[nodiscard]] Snapshot values() const {
        const std::lock_guard lock(m_mutex);
        return m_values;
    }

    /// `change` gets a copy of the values to alter. Changes are applied one after the other, none is lost.
    template <typename Change>
    void change(Change&& change) {
        const std::lock_guard lock(m_mutex);
        auto next = std::make_shared<SettingsSnapshot>(*m_values);
        change(*next);
        m_values = std::move(next);
    }

private:
    mutable std::mutex m_mutex;
    // Guarded by m_mutex; what it points to never changes.
    Snapshot m_values;
};

}  // namespace journal
