#pragma once

#include <list>
#include <string>

#include "journal-items/DialledCallItem.h"
#include "journal-items/MissedCallItem.h"
#include "journal-items/ReceivedCallItem.h"
#include "platform/csta/CallLogEntryEvent.h"

class Service;
struct CallLogEntryRequest;

namespace journal {

class PlatformServices;
class PhoneSettings;

/// Reports the entries that the phone has deleted to a switch that keeps the call log itself.
///
/// Each request waits for the response of the switch, so the caller holds no list lock. Any thread may
/// call. A request that fails is logged and not repeated, and the deletion stands; the next one is sent all
/// the same. How long a request waits for a switch that does not respond is up to the CSTA service. The
/// caller decides if a request is due, except for the dialled overflow, which has a rule of its own.
class CallLogRequests {
public:
    /// Everything is borrowed and outlives this object. `source` is the source of the requests.
    CallLogRequests(const PlatformServices& platform, const PhoneSettings& settings, Service* source)
        : m_platform(platform), m_settings(settings), m_source(source) {}

    /// Sends one request. False without a switch, and when it does not respond.
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

    /// Reports the oldest dialled occurrence, which a new one pushes out of a list of more than nine, unless
    /// its number stands elsewhere in the list or is the new one's.
    bool sendCSTACAllLogEntryDeleteRequest(const std::list<DialledCallItem::DialledCallInfo>& infos,
                                           const DialledCallItem::DialledCallInfo& newInfo) const;

private:
    [[nodiscard]] bool send(const CallLogEntryRequest& request) const;

    const PlatformServices& m_platform;
    const PhoneSettings& m_settings;
    Service* const m_source;
};

}  // namespace journal
