#pragma once

namespace journal {

class PlatformServices;
class PhoneSettings;

/// Decides if the journal tracks calls: it does not while another journal on the phone owns the call log.
/// Thread-safe.
class JournalPolicy {
public:
    /// Both are borrowed and outlive this object.
    JournalPolicy(PlatformServices& platform, const PhoneSettings& settings)
        : m_platform(platform), m_settings(settings) {}

    /// True when call-control events are to be journalled.
    [[nodiscard]] bool handleCSTAEvent() const;
    /// True if the journal processes the switch's events about calls and its call log now: false while
    /// another journal owns the call log, and on a SIP phone whose call log is switched off.
    [[nodiscard]] bool acceptsEvents() const;
    [[nodiscard]] bool isUCServiceRunning() const;
    [[nodiscard]] bool isPallaxServiceRunning() const;
    [[nodiscard]] bool isWsiUcJournalAllowed() const;

private:
    [[nodiscard]] bool ownsCallLog() const;

    PlatformServices& m_platform;
    const PhoneSettings& m_settings;
};

}  // namespace journal
