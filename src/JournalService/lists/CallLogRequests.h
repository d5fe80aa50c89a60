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

/// Tells a switch that keeps the call log itself which entries the phone has deleted.
///
/// Each request waits for the switch's answer, so callers hold no list lock. Any thread may call. A request
/// that fails is logged, and the deletion stands: nothing is retried. Whether a request is due at all is the
/// callers' decision, but for the dialled overflow, which has a rule of its own.
///
/// A switch that is connected and silent costs seconds a request, in which no call can be filed. So the
/// requests of one change stand together (`Batch`): once one has failed, the others fail without being sent.
class CallLogRequests {
public:
    /// The requests sent while it lives are one batch; a batch inside another one is part of that. One thread
    /// at a time: whoever holds it holds the lists' `Change`, too.
    class Batch {
    public:
        explicit Batch(const CallLogRequests& requests) : m_requests(requests) { ++m_requests.m_batches; }
        Batch(const Batch&) = delete;
        Batch& operator=(const Batch&) = delete;
        ~Batch() {
            --m_requests.m_batches;
            m_requests.m_failed = m_requests.m_failed && m_requests.m_batches > 0;
        }

    private:
        const CallLogRequests& m_requests;
    };

    /// Everything is borrowed and outlives this object. `source` is the source of the requests.
    CallLogRequests(const PlatformServices& platform, const PhoneSettings& settings, Service* source)
        : m_platform(platform), m_settings(settings), m_source(source) {}

    /// Sends one request; false without a switch, when it does not answer, or when it did not answer this
    /// batch before.
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

    /// A new dialled occurrence pushes the oldest one out of a list of more than nine: the switch forgets it
    /// too, unless its number stands elsewhere in the list or is the new one's.
    bool sendCSTACAllLogEntryDeleteRequest(const std::list<DialledCallItem::DialledCallInfo>& infos,
                                           const DialledCallItem::DialledCallInfo& newInfo) const;

private:
    [[nodiscard]] bool exchange(const CallLogEntryRequest& request) const;

    const PlatformServices& m_platform;
    const PhoneSettings& m_settings;
    Service* const m_source;

    // Guarded by the lists' `Change`: how many batches are open, and whether a request of theirs has failed.
    mutable int m_batches = 0;
    mutable bool m_failed = false;
};

}  // namespace journal
