#pragma once

#include <map>
#include <string>

#include "platform/csta/CSTAEvent.h"

namespace linktest {

/// The name of an event's class, without what all of them have in common: "Delivered".
inline std::string nameOf(const CSTAEvent& event) {
    static const std::map<CSTAEventCode, const char*> names = {
        {CSTAEventCode::eServiceInitiated, "ServiceInitiated"},
        {CSTAEventCode::eOriginated, "Originated"},
        {CSTAEventCode::eOffered, "Offered"},
        {CSTAEventCode::eQueued, "Queued"},
        {CSTAEventCode::eDelivered, "Delivered"},
        {CSTAEventCode::eDiverted, "Diverted"},
        {CSTAEventCode::eEstablished, "Established"},
        {CSTAEventCode::eHeld, "Held"},
        {CSTAEventCode::eRetrieved, "Retrieved"},
        {CSTAEventCode::eFailed, "Failed"},
        {CSTAEventCode::eConnectionCleared, "Cleared"},
        {CSTAEventCode::eTransferred, "Transferred"},
        {CSTAEventCode::eConferenced, "Conferenced"},
        {CSTAEventCode::eCallInformation, "CallInformation"},
        {CSTAEventCode::eNetworkReached, "NetworkReached"},
        {CSTAEventCode::ePrivate, "Private"},
        {CSTAEventCode::eSystemStatus, "Status"},
    };
    const auto found = names.find(event.getType());
    return found == names.end() ? "another event" : found->second;
}

}  // namespace linktest
