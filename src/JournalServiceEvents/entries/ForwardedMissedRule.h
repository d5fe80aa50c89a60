#pragma once

class Contact;

namespace journal {

class JournalClock;
class JournalLists;

/// Keeps one call that is reported as missed and as forwarded, within five seconds, from appearing in both
/// lists: the forwarded entry stays.
///
/// Requires: the caller has a `ListTransaction`, which guards the times below, and no list is open.
class ForwardedMissedRule {
public:
    /// All references are borrowed and outlive this object.
    ForwardedMissedRule(const JournalClock& clock, JournalLists& lists) : m_clock(clock), m_lists(lists) {}

    /// False when the missed call is the call that was just forwarded. Otherwise it stores the time of this
    /// call.
    [[nodiscard]] bool sscfw_canAddMissedCall(const Contact& contact);
    /// Call before a forwarded call is filed: removes the missed occurrence that the same call left a moment
    /// ago, and stores the time.
    void sscfw_checkNewForwardedCall(const Contact& contact);

    /// Stores the viewed mark that the missed item merged last had before; a missed item that loses an
    /// occurrence gets it again.
    void keepViewedBeforeMerge(bool viewed) noexcept { m_viewedBeforeMerge = viewed; }

private:
    void removeMissedOccurrence(const Contact& contact);

    const JournalClock& m_clock;
    JournalLists& m_lists;

    // Guarded by the change lock of the lists. Seconds since 1970, -1 for none.
    long m_lastMissedTimeSec = -1;
    long m_lastForwardedTimeSec = -1;
    bool m_viewedBeforeMerge = false;
};

}  // namespace journal
