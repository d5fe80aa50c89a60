#pragma once

#include <type_traits>

#include "host/database/Query.h"
#include "journal-items/DialledCallItem.h"
#include "journal-items/Duration.h"
#include "journal-items/ForwardedCallItem.h"
#include "journal-items/MissedCallItem.h"
#include "journal-items/ReceivedCallItem.h"
#include "journal-items/Redirecting.h"
#include "journal-items/TimeFormat.h"

/// The columns of the table `call` that hold the fields of an occurrence. A column without a field in the
/// occurrence's class holds its default. Use them inside one `Database::read` or `write` call.
namespace host::occurrence_columns {

/// The occurrence as one of its base classes, or a default object of that class if it is no base.
template <typename Part, typename Info>
decltype(auto) as(Info& info) {
    if constexpr (std::is_base_of_v<Part, std::remove_const_t<Info>>) {
        return static_cast<std::conditional_t<std::is_const_v<Info>, const Part&, Part&>>(info);
    } else {
        return Part();
    }
}

inline void bindCallInfo(Query& query, const CallInfo& info) {
    query.bind(info.getConnectedNumber());
    query.bind(info.getTextC()).bind(info.getTextD()).bind(info.getTimeAndDate()).bind(info.getLogTarget());
    query.bind(info.getPresentationA()).bind(info.getPresentationB());
    query.bind(info.getPresentationC()).bind(info.getPresentationD());
}

inline void bindRedirecting(Query& query, const Redirecting& redirecting) {
    query.bind(redirecting.getRedirectingNumberPresentation())
        .bind(redirecting.getRedirectingNamePresentation());
    query.bind(redirecting.getTransferNumberType()).bind(redirecting.getRedirectingReason());
}

template <typename Info>
void bindFields(Query& query, const Info& info) {
    bindCallInfo(query, info);
    query.bind(as<Duration>(info).getDuration()).bind(as<TimeFormat>(info).getTimeFormat());
    bindRedirecting(query, info);
    const MissedCallItem::MissedCallInfo& missed = as<MissedCallItem::MissedCallInfo>(info);
    query.bind(missed.getCompletedElsewhere()).bind(missed.getGroupText()).bind(missed.getLineKey());
    const DialledCallItem::DialledCallInfo& dialled = as<DialledCallItem::DialledCallInfo>(info);
    query.bind(dialled.getSubstituteNumber()).bind(dialled.getFeatureAccessCode());
    const ForwardedCallItem::ForwardedCallInfo& forwarded = as<ForwardedCallItem::ForwardedCallInfo>(info);
    query.bind(forwarded.getForwardedToNumber());
    query.bind(forwarded.getForwardingTarget()).bind(forwarded.getForwardingReason());
}

inline void readCallInfo(Query& query, CallInfo& info) {
    info.setCallId(query.text());
    info.setNumber(query.text());
    info.setConnectedNumber(query.text());
    info.setTextC(query.text());
    info.setTextD(query.text());
    info.setTimeAndDate(query.text());
    info.setLogTarget(query.smallNumber());
    info.setPresentationA(query.smallNumber());
    info.setPresentationB(query.smallNumber());
    info.setPresentationC(query.smallNumber());
    info.setPresentationD(query.smallNumber());
}

inline void readRedirecting(Query& query, Redirecting& redirecting) {
    redirecting.setRedirectingNumber(query.text());
    redirecting.setRedirectingName(query.text());
    redirecting.setRedirectingNumberPresentation(query.smallNumber());
    redirecting.setRedirectingNamePresentation(query.smallNumber());
    redirecting.setTransferNumberType(query.smallNumber());
    redirecting.setRedirectingReason(query.smallNumber());
}

template <typename Info>
void readFields(Query& query, Info& info) {
    readCallInfo(query, info);
    auto&& duration = as<Duration>(info);
    duration.setDuration(query.text());
    auto&& timeFormat = as<TimeFormat>(info);
    timeFormat.setTimeFormat(query.smallNumber());
    readRedirecting(query, info);
    auto&& missed = as<MissedCallItem::MissedCallInfo>(info);
    missed.setCompletedElsewhere(query.flag());
    missed.setGroupText(query.text());
    missed.setLineKey(query.text());
    auto&& dialled = as<DialledCallItem::DialledCallInfo>(info);
    dialled.setSubstituteNumber(query.text());
    dialled.setFeatureAccessCode(query.flag());
    auto&& forwarded = as<ForwardedCallItem::ForwardedCallInfo>(info);
    forwarded.setForwardedToNumber(query.text());
    forwarded.setForwardingTarget(query.smallNumber());
    forwarded.setForwardingReason(query.smallNumber());
}

}  // namespace host::occurrence_columns
