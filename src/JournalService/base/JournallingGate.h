#pragma once

namespace journal {

class Collaborators;
class PhoneSettings;

/// Decides whether the journal follows calls at all: not while another journal on the phone owns the call log.
/// Any thread may ask.
class JournallingGate {
public:
    /// Both are borrowed and outlive the gate.
    JournallingGate(Collaborators& collaborators, const PhoneSettings& settings)
        : m_collaborators(collaborators), m_settings(settings) {}

    /// True when call-control events are to be journalled.
    [[nodiscard]] bool handleCSTAEvent() const;
    [[nodiscard]] bool isUCServiceRunning() const;
    [[nodiscard]] bool isPallaxServiceRunning() const;
    [[nodiscard]] bool isWsiUcJournalAllowed() const;

private:
    [[nodiscard]] bool isJournalOurs() const;

    Collaborators& m_collaborators;
    const PhoneSettings& m_settings;
};

}  // namespace journal
