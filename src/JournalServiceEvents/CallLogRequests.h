#pragma once

#include <list>
#include <string>

#include "journal-items/DialledCallItem.h"
#include "journal-items/MissedCallItem.h"
#include "journal-items/ReceivedCallItem.h"
#include "platform/csta/CallLogEntryEvent.h"

struct CallLogEntryRequest;

namespace journal {

class Collaborators;
class PhoneSettings;

/// Tells a switch that keeps the call log itself which entries the phone has deleted.
///
/// Each request waits for the switch's answer, so callers hold no list lock. Any thread may call. A request that
/// fails is logged, and the deletion stands: nothing is retried. Whether a request is due at all is the callers'
/// decision, but for the dialled overflow, which has a rule of its own.
class CallLogRequests {
public:
    /// Both are borrowed and outlive this object.
    CallLogRequests(const Collaborators& collaborators, const PhoneSettings& settings)
        : m_collaborators(collaborators), m_settings(settings) {}

    /// Sends one request; false without a switch, or when it does not take the request.
    bool sendCSTAEscapeRequest(const CallLogEntryRequest* request) const;

    bool sendDeleteAllCallLogEntryRequest(CallLogEntryEvent::_LogTarget target) const;

    bool sendMissedCallLogEntryRequest(const MissedCallItem::MissedCallInfo* info) const;
    bool sendMissedGroupCallLogEntryRequest(const MissedCallItem::MissedCallInfo* info) const;
    bool sendDialledCallLogEntryRequest(const DialledCallItem::DialledCallInfo* info) const;
    bool sendReceivedCallLogEntryRequest(const ReceivedCallItem::ReceivedCallInfo* info) const;

    // One request for each distinct number, in the order of first appearance.
    bool sendMissedCallLogEntryRequests(const std::list<MissedCallItem::MissedCallInfo>& infos) const;
    bool sendDialledCallLogEntryRequests(const std::list<DialledCallItem::DialledCallInfo>& infos) const;
    bool sendReceivedCallLogEntryRequests(const std::list<ReceivedCallItem::ReceivedCallInfo>& infos) const;

    /// A new dialled occurrence pushes the oldest one out of a list of more than nine: the switch forgets it too,
    /// unless its number stands elsewhere in the list or is the new one's.
    bool sendCSTACAllLogEntryDeleteRequest(const std::list<DialledCallItem::DialledCallInfo>& infos,
                                           const DialledCallItem::DialledCallInfo& newInfo) const;

private:
    const Collaborators& m_collaborators;
    const PhoneSettings& m_settings;
};

}  // namespace journal
