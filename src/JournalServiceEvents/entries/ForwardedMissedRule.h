#pragma once

class Contact;
class ObserverNotifierIfc;

namespace journal {

class JournalClock;
class JournalLists;
class ListPersistence;

/// Keeps one call that is reported as missed and as forwarded, within five seconds, from standing in both lists:
/// the forwarded entry is the one that stays.
///
/// Threads: the caller holds a `JournalLists::Change`, which is what guards the two times; it holds no list.
class ForwardedMissedRule {
public:
    /// The parts are borrowed and outlive this one.
    ForwardedMissedRule(const JournalClock& clock, JournalLists& lists, ListPersistence& persistence,
                        ObserverNotifierIfc& notifier)
        : m_clock(clock), m_lists(lists), m_persistence(persistence), m_notifier(notifier) {}

    /// False when the missed call is the call that was just forwarded. Otherwise it notes the time of this one.
    [[nodiscard]] bool sscfw_canAddMissedCall(const Contact& contact);
    /// A call is about to be filed as forwarded: takes back the missed occurrence that it left a moment ago, and
    /// notes the time.
    void sscfw_checkNewForwardedCall(const Contact& contact);

    /// Whether the missed item that was merged last had been viewed before; a missed item that gets shorter goes
    /// back to it.
    void keepViewedBeforeMerge(bool viewed) noexcept { m_viewedBeforeMerge = viewed; }

private:
    void takeBackMissedOccurrence(const Contact& contact);

    const JournalClock& m_clock;
    JournalLists& m_lists;
    ListPersistence& m_persistence;
    ObserverNotifierIfc& m_notifier;

    // Guarded by the caller's change. Seconds since 1970, -1 for none.
    long m_lastMissedTimeSec = -1;
    long m_lastForwardedTimeSec = -1;
    bool m_viewedBeforeMerge = false;
};

}  // namespace journal
