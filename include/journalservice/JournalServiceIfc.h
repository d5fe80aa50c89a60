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
/// Threads: any thread may call at any time; operations that change the journal must not be called from inside an
/// observer callback. Items are copied in and out. An entry is named by its entry id, which changes whenever a new
/// call is merged into the entry. An operation on one entry answers false for an id that is not known (any more), and a
/// `get...` leaves its output as it was then; deleting a set of entries, or a list, is always true, and passes over ids
/// that are not known.
/// A change is written to the database before the operation returns. Operations that only some deployments use
/// answer false, and say so, where they do nothing. New operations go to the end.
class JournalServiceIfc : public JournalServiceObserverSubscriptionIfc {
public:
    virtual void getMissedCallList(std::deque<MissedCallItem>& list) = 0;
    virtual bool getMissedCall(const std::string& entryId, MissedCallItem& item) = 0;
    /// Adds `item` when no entry equals it, else marks that entry as unviewed. An item without entry id is refused
    /// with a log line.
    virtual void updateMissedCall(const MissedCallItem& item) = 0;
    /// Marks the named entries as viewed; ids that are not known are passed over. Always true.
    virtual bool setMissedCallListAsViewed(const std::set<std::string>& entryIds) = 0;
    /// Marks one entry as viewed.
    virtual void ageMissedCall(const std::string& entryId) = 0;
    /// `isSendDeleteMissedCallRequest` true refuses the call: false, and nothing changes.
    virtual bool deleteMissedCall(const std::string& entryId, bool isSendDeleteMissedCallRequest) = 0;
    virtual bool deleteMissedCallList(const std::set<std::string>& entryIds) = 0;
    virtual bool deleteMissedCallList() = 0;

    virtual void getDialledCallList(std::deque<DialledCallItem>& list) = 0;
    virtual bool getDialledCall(const std::string& entryId, DialledCallItem& item) = 0;
    virtual bool deleteDialledCall(const std::string& entryId) = 0;
    virtual bool deleteDialledCallList(const std::set<std::string>& entryIds) = 0;
    virtual bool deleteDialledCallList() = 0;
    /// The newest dialled entry; false when there is none.
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

    /// Deletes the named entries wherever they stand, in any of the five lists, each list as its own deletion by
    /// set does it. `isSendDeleteMissedCallRequest` true spares the missed list, as `deleteMissedCall` does.
    /// True when at least one entry was deleted.
    virtual bool deleteCalls(const std::set<std::string>& entryIds, bool isSendDeleteMissedCallRequest) = 0;
    /// Empties the missed, dialled, received and forwarded lists and the contact list; callbacks stay. Always true.
    virtual bool deleteAllCalls() = 0;

    /// Both log that they do nothing, and answer false.
    virtual bool resetUserCalls() = 0;
    virtual bool resetUserContacts() = 0;
    /// Loads lists and settings from the database again and tells the observers. Always true.
    virtual bool refreshCallLog() = 0;
    /// Loads the lists from the database again. Always true.
    virtual bool refreshCallLists() = 0;
    /// "true" while an outside call server journals missed calls itself.
    virtual bool setJournalServiceCallLogEventsDisabling(const std::string& value) = 0;

    /// Adds to `records` one record for each entry, in any of the five lists, that belongs to `contact`: an entry
    /// whose newest occurrence (or callback) has one of the contact's numbers or its search number. Lists in the
    /// order missed, dialled, received, forwarded, callbacks; newest first within each. False when none does.
    virtual bool getCallRecordsAssociatedWith(const Contact& contact,
                                              std::vector<Contact::CallRecord>& records) = 0;
};
