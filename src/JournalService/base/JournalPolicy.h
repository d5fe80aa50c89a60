#pragma once

namespace journal {

class PlatformServices;
class PhoneSettings;

/// Decides whether the journal follows calls at all: not while another journal on the phone owns the call
/// log. Any thread may ask.
class JournalPolicy {
public:
    /// Both are borrowed and outlive the gate.
    JournalPolicy(PlatformServices& platform, const PhoneSettings& settings)
        : m_platform(platform), m_settings(settings) {}

    /// True when call-control events are to be journalled.
    [[nodiscard]] bool handleCSTAEvent() const;
    [[nodiscard]] bool isUCServiceRunning() const;
    [[nodiscard]] bool isPallaxServiceRunning() const;
    [[nodiscard]] bool isWsiUcJournalAllowed() const;

private:
    [[nodiscard]] bool isJournalOurs() const;

    PlatformServices& m_platform;
    const PhoneSettings& m_settings;
};

}  // namespace journal
