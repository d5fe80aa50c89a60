#pragma once

#include <deque>
#include <set>
#include <string>
#include <vector>

#include "journal-items/CallBackItem.h"
#include "journal-items/Contact.h"
#include "journal-items/DialledCallItem.h"
#include "journal-items/ForwardedCallItem.h"
#include "journal-items/MissedCallItem.h"
#include "journal-items/ReceivedCallItem.h"
#include "journalservice/JournalServiceObserverSubscriptionIfc.h"

/// The client interface of the call journal: five lists, each with the newest entry first.
///
/// Thread-safe. Do not call an operation that changes the journal from inside an observer callback: it
/// deadlocks.
///
/// Items are copied in and out. An entry is identified by its entry id, which changes whenever a new call is
/// merged into the entry. An operation on one entry returns false for an unknown id; a `get...` then leaves
/// its output unchanged. Deleting a set of entries, or a list, always returns true and ignores unknown ids.
///
/// A change is written to the database before the operation returns. A rejected write is logged;
/// the change stays in memory. New operations are added at the end.
class JournalServiceIfc : public JournalServiceObserverSubscriptionIfc {
public:
    virtual void getMissedCallList(std::deque<MissedCallItem>& list) = 0;
    virtual bool getMissedCall(const std::string& entryId, MissedCallItem& item) = 0;
    /// Adds `item` if no entry equals it; otherwise marks that entry as unviewed. Refuses an item without
    /// entry id with a log text.
    virtual void updateMissedCall(const MissedCallItem& item) = 0;
    /// Marks the entries as viewed and ignores unknown ids. Always returns true.
    virtual bool setMissedCallListAsViewed(const std::set<std::string>& entryIds) = 0;
    /// Marks one entry as viewed.
    virtual void ageMissedCall(const std::string& entryId) = 0;
    /// If `isSendDeleteMissedCallRequest` is true, returns false and changes nothing.
    virtual bool deleteMissedCall(const std::string& entryId, bool isSendDeleteMissedCallRequest) = 0;
    virtual bool deleteMissedCallList(const std::set<std::string>& entryIds) = 0;
    virtual bool deleteMissedCallList() = 0;

    virtual void getDialledCallList(std::deque<DialledCallItem>& list) = 0;
    virtual bool getDialledCall(const std::string& entryId, DialledCallItem& item) = 0;
    virtual bool deleteDialledCall(const std::string& entryId) = 0;
    virtual bool deleteDialledCallList(const std::set<std::string>& entryIds) = 0;
    virtual bool deleteDialledCallList() = 0;
    /// Returns the newest dialled entry; false if there is none.
    virtual bool getLastDialledNumber(DialledCallItem& item) = 0;

    virtual void getReceivedCallList(std::deque<ReceivedCallItem>& list) = 0;
    virtual bool getReceivedCall(const std::string& entryId, ReceivedCallItem& item) = 0;
    virtual bool deleteReceivedCall(const std::string& entryId) = 0;
    virtual bool deleteReceivedCallList(const std::set<std::string>& entryIds) = 0;
    virtual bool deleteReceivedCallList() = 0;

    virtual void getForwardedCallList(std::deque<ForwardedCallItem>& list) = 0;
    virtual bool getForwardedCall(const std::string& entryId, ForwardedCallItem& item) = 0;
    virtual bool deleteForwardedCall(const std::string& entryId) = 0;
    virtual bool deleteForwardedCallList(const std::set<std::string>& entryIds) = 0;
    virtual bool deleteForwardedCallList() = 0;

    virtual void getCallBackList(std::deque<CallBackItem>& list) = 0;
    virtual bool deleteCallBack(const std::string& entryId) = 0;
    virtual bool deleteCallBackList(const std::set<std::string>& entryIds) = 0;
    virtual bool deleteCallBackList() = 0;

    /// Deletes the entries from all five lists. If `isSendDeleteMissedCallRequest` is true, the missed list
    /// is not changed, as in `deleteMissedCall`. Returns true if at least one entry was deleted.
    virtual bool deleteCalls(const std::set<std::string>& entryIds, bool isSendDeleteMissedCallRequest) = 0;
    /// Empties the missed, dialled, received and forwarded lists and the contact list; callbacks stay. Always
    /// returns true.
    virtual bool deleteAllCalls() = 0;

    /// Both have no effect other than a log text, and return false.
    virtual bool resetUserCalls() = 0;
    virtual bool resetUserContacts() = 0;
    /// Loads lists and settings from the database again and notifies the observers. Always returns true.
    virtual bool refreshCallLog() = 0;
    /// Loads the lists from the database again. Always returns true.
    virtual bool refreshCallLists() = 0;
    /// Set to "true" while an outside call server journals missed calls itself. Always returns true.
    virtual bool setJournalServiceCallLogEventsDisabling(const std::string& value) = 0;

    /// Appends to `records` one record for each entry of `contact` in the five lists: an entry whose newest
    /// occurrence (or callback) has one of the contact's numbers or its search number. The order is missed,
    /// dialled, received, forwarded, callbacks, and newest first within each list. Returns false if there is
    /// none.
    virtual bool getCallRecordsAssociatedWith(const Contact& contact,
                                              std::vector<Contact::CallRecord>& records) = 0;

    /// The entry with the item's unique id, loaded or not, takes over the item's names, picture, calls
    /// (newest first, at most ten) and, of a missed entry, the viewed mark. Its entry id stays. Observers are
    /// notified once of an updated item. An item without calls deletes the entry.
    ///
    /// If `reportsRemoved` is true, the calls that the item no longer has are reported to a switch that keeps
    /// the call log, as a deletion reports them. Returns false, and has no effect, if the item has no unique
    /// id, the list has no such entry, or the entry has another entry id than the item, because a call
    /// was added meanwhile; an item without an entry id stands for the entry as it is now.
    virtual bool replaceEntry(const MissedCallItem& item, bool reportsRemoved) = 0;
    virtual bool replaceEntry(const DialledCallItem& item, bool reportsRemoved) = 0;
    virtual bool replaceEntry(const ReceivedCallItem& item, bool reportsRemoved) = 0;
    virtual bool replaceEntry(const ForwardedCallItem& item, bool reportsRemoved) = 0;
};
