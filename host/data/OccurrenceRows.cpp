#include "host/data/OccurrenceRows.h"

#include <type_traits>

#include "journal-items/Duration.h"
#include "journal-items/Redirecting.h"
#include "journal-items/TimeFormat.h"

namespace host {
namespace {

// The columns in one order: `bindFields` binds what `readFields` reads.
constexpr const char* kInsert = R"sql(
INSERT INTO occurrence (item, position, line,
    call_id, number, connected_number, text_c, text_d, time_and_date,
    log_target, presentation_a, presentation_b, presentation_c, presentation_d,
    duration, time_format,
    redirecting_number, redirecting_name, redirecting_number_presentation, redirecting_name_presentation,
    transfer_number_type, redirecting_reason,
    completed_elsewhere, group_text, line_key, substitute_number, feature_access_code,
    forwarded_to_number, forwarding_target, forwarding_reason)
VALUES (?, ?, ?,  ?, ?, ?, ?, ?, ?,  ?, ?, ?, ?, ?,  ?, ?,  ?, ?, ?, ?,  ?, ?,  ?, ?, ?, ?, ?,  ?, ?, ?)
)sql";

constexpr const char* kSelect = R"sql(
SELECT call_id, number, connected_number, text_c, text_d, time_and_date,
    log_target, presentation_a, presentation_b, presentation_c, presentation_d,
    duration, time_format,
    redirecting_number, redirecting_name, redirecting_number_presentation, redirecting_name_presentation,
    transfer_number_type, redirecting_reason,
    completed_elsewhere, group_text, line_key, substitute_number, feature_access_code,
    forwarded_to_number, forwarding_target, forwarding_reason
FROM occurrence WHERE item = ? ORDER BY position
)sql";

using Missed = MissedCallItem::MissedCallInfo;
using Dialled = DialledCallItem::DialledCallInfo;
using Forwarded = ForwardedCallItem::ForwardedCallInfo;

/// The occurrence as one of its base classes, or a default object of that class if it is no base.
template <typename Part, typename Info>
decltype(auto) as(Info& info) {
    if constexpr (std::is_base_of_v<Part, std::remove_const_t<Info>>) {
        return static_cast<std::conditional_t<std::is_const_v<Info>, const Part&, Part&>>(info);
    } else {
        return Part();
    }
}

void bindCallInfo(Query& query, const CallInfo& info) {
    query.bind(info.getCallId()).bind(info.getNumber()).bind(info.getConnectedNumber());
    query.bind(info.getTextC()).bind(info.getTextD()).bind(info.getTimeAndDate()).bind(info.getLogTarget());
    query.bind(info.getPresentationA()).bind(info.getPresentationB());
    query.bind(info.getPresentationC()).bind(info.getPresentationD());
}

void bindRedirecting(Query& query, const Redirecting& redirecting) {
    query.bind(redirecting.getRedirectingNumber()).bind(redirecting.getRedirectingName());
    query.bind(redirecting.getRedirectingNumberPresentation())
        .bind(redirecting.getRedirectingNamePresentation());
    query.bind(redirecting.getTransferNumberType()).bind(redirecting.getRedirectingReason());
}

template <typename Info>
void bindFields(Query& query, const Info& info) {
    bindCallInfo(query, info);
    query.bind(as<Duration>(info).getDuration()).bind(as<TimeFormat>(info).getTimeFormat());
    bindRedirecting(query, info);
    const Missed& missed = as<Missed>(info);
    query.bind(missed.getCompletedElsewhere()).bind(missed.getGroupText()).bind(missed.getLineKey());
    const Dialled& dialled = as<Dialled>(info);
    query.bind(dialled.getSubstituteNumber()).bind(dialled.getFeatureAccessCode());
    const Forwarded& forwarded = as<Forwarded>(info);
    query.bind(forwarded.getForwardedToNumber());
    query.bind(forwarded.getForwardingTarget()).bind(forwarded.getForwardingReason());
}

void readCallInfo(Query& query, CallInfo& info) {
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

void readRedirecting(Query& query, Redirecting& redirecting) {
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
    auto&& missed = as<Missed>(info);
    missed.setCompletedElsewhere(query.flag());
    missed.setGroupText(query.text());
    missed.setLineKey(query.text());
    auto&& dialled = as<Dialled>(info);
    dialled.setSubstituteNumber(query.text());
    dialled.setFeatureAccessCode(query.flag());
    auto&& forwarded = as<Forwarded>(info);
    forwarded.setForwardedToNumber(query.text());
    forwarded.setForwardingTarget(query.smallNumber());
    forwarded.setForwardingReason(query.smallNumber());
}

}  // namespace

template <typename Info>
void OccurrenceRows::replace(std::int64_t item, const std::list<Info>& occurrences) {
    m_session.query("DELETE FROM occurrence WHERE item = ?").bind(item).run();
    Query insert = m_session.query(kInsert);
    std::int64_t position = 0;
    for (const Info& info : occurrences) {
        insert.again().bind(item).bind(position++).bind(m_line);
        bindFields(insert, info);
        insert.run();
    }
}

template <typename Info>
void OccurrenceRows::read(std::int64_t item, std::list<Info>& occurrences) {
    Query select = m_session.query(kSelect);
    select.bind(item);
    while (select.next()) {
        readFields(select, occurrences.emplace_back());
    }
}

template void OccurrenceRows::replace(std::int64_t, const std::list<MissedCallItem::MissedCallInfo>&);
template void OccurrenceRows::replace(std::int64_t, const std::list<DialledCallItem::DialledCallInfo>&);
template void OccurrenceRows::replace(std::int64_t, const std::list<ReceivedCallItem::ReceivedCallInfo>&);
template void OccurrenceRows::replace(std::int64_t, const std::list<ForwardedCallItem::ForwardedCallInfo>&);
template void OccurrenceRows::read(std::int64_t, std::list<MissedCallItem::MissedCallInfo>&);
template void OccurrenceRows::read(std::int64_t, std::list<DialledCallItem::DialledCallInfo>&);
template void OccurrenceRows::read(std::int64_t, std::list<ReceivedCallItem::ReceivedCallInfo>&);
template void OccurrenceRows::read(std::int64_t, std::list<ForwardedCallItem::ForwardedCallInfo>&);

}  // namespace host
