#pragma once

/// The memory of the journal's lists, for a process with many journals. Without a call of
/// `loadListsAtFirstNeed` a journal loads its lists at a subscription, and keeps them.
///
/// Thread-safe. Do not call from inside an observer callback: it deadlocks.
class JournalListMemoryIfc {
public:
    JournalListMemoryIfc() = default;
    JournalListMemoryIfc(const JournalListMemoryIfc&) = delete;
    JournalListMemoryIfc& operator=(const JournalListMemoryIfc&) = delete;
    virtual ~JournalListMemoryIfc() = default;

    /// From here on the lists are loaded when an operation first needs them. Call it before the first
    /// subscription, which is the caller's own: it does not load them, and reports counts of 0 and a default
    /// dialled entry. Later ones load them.
    virtual void loadListsAtFirstNeed() = 0;
    /// Frees the memory of the lists until an operation needs them; no observer is notified. Returns false,
    /// and keeps them, if they have a change that the database has refused, or without
    /// `loadListsAtFirstNeed`.
    virtual bool unloadLists() = 0;
    /// False if the next operation that needs the lists loads them. Takes no lock.
    [[nodiscard]] virtual bool areListsLoaded() const noexcept = 0;
};
