#include "host/presentation/ItemJson.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <string_view>

#include "host/presentation/ContactFields.h"
#include "host/presentation/ListName.h"
#include "host/presentation/PlainText.h"
#include "journal-items/Occurrences.h"

namespace host {
namespace {

using Json = nlohmann::ordered_json;

constexpr std::array<std::string_view, 5> kNumberTypes{"unknown", "office", "mobile", "private", "office2"};
constexpr std::array<std::string_view, 4> kCallBackTypes{"unknown", "onBusy", "onNoReply", "onRequest"};
constexpr std::array<std::string_view, 4> kCallBackStates{"unknown", "requested", "ringing", "done"};

/// A value from a client or an old database may be unknown; it gets the first word.
template <std::size_t Size, typename Value>
std::string wordIn(const std::array<std::string_view, Size>& words, Value value) {
    const auto index = static_cast<std::size_t>(static_cast<std::uint32_t>(value));
    return std::string(index < Size ? words[index] : words.front());
}

template <typename Occurrence>
Json commonJson(const Occurrence& occurrence) {
    return Json{{"number", occurrence.getNumber()},
                {"connectedNumber", occurrence.getConnectedNumber()},
                {"time", occurrence.getTimeAndDate()},
                {"redirectingNumber", occurrence.getRedirectingNumber()},
                {"redirectingName", occurrence.getRedirectingName()},
                {"endApproximate", false}};
}

/// "75:11" in seconds.
int secondsOf(const std::string& duration) {
    int minutes = 0;
    int seconds = 0;
    return std::sscanf(duration.c_str(), "%d:%d", &minutes, &seconds) == 2 ? 60 * minutes + seconds : 0;
}

void addDuration(Json& json, const Duration& duration) {
    json["duration"] = duration.getDuration();
    json["durationSeconds"] = secondsOf(duration.getDuration());
}

Json occurrenceJson(const MissedCallItem::MissedCallInfo& occurrence) {
    Json json = commonJson(occurrence);
    json["lineKey"] = occurrence.getLineKey();
    json["completedElsewhere"] = occurrence.getCompletedElsewhere();
    return json;
}

Json occurrenceJson(const DialledCallItem::DialledCallInfo& occurrence) {
    Json json = commonJson(occurrence);
    addDuration(json, occurrence);
    json["substituteNumber"] = occurrence.getSubstituteNumber();
    json["featureAccessCode"] = occurrence.getFeatureAccessCode();
    return json;
}

Json occurrenceJson(const ReceivedCallItem::ReceivedCallInfo& occurrence) {
    Json json = commonJson(occurrence);
    addDuration(json, occurrence);
    return json;
}

Json occurrenceJson(const ForwardedCallItem::ForwardedCallInfo& occurrence) {
    Json json = commonJson(occurrence);
    addDuration(json, occurrence);
    json["forwardedToNumber"] = occurrence.getForwardedToNumber();
    return json;
}

template <typename Item>
Json headJson(const Item& item) {
    const auto& occurrences = occurrencesOf(item);
    const bool empty = occurrences.empty();
    return Json{{"entryId", item.getEntryId()},
                {"uniqueId", item.getUniqueId()},
                {"list", ListTraits<Item>::kWord},
                {"firstName", item.getFirstname()},
                {"surname", item.getSurname()},
                {"displayName", fullName(item.getFirstname(), item.getSurname())},
                {"picture", item.getPictureClip()},
                {"number", empty ? std::string() : occurrences.front().getNumber()},
                {"numberText", empty ? std::string() : occurrences.front().getNumber()},
                {"time", empty ? std::string() : occurrences.front().getTimeAndDate()}};
}

template <typename Item>
void addOccurrences(Json& json, const Item& item) {
    Json all = Json::array();
    for (const auto& occurrence : occurrencesOf(item)) {
        all.push_back(occurrenceJson(occurrence));
    }
    json["calls"] = all.size();
    json["occurrences"] = std::move(all);
}

}  // namespace

Json itemJson(const MissedCallItem& item) {
    Json json = headJson(item);
    json["viewed"] = item.getViewed();
    addOccurrences(json, item);
    return json;
}

Json itemJson(const DialledCallItem& item) {
    Json json = headJson(item);
    json["groupBy"] = item.getJournalSeviceGroupBy();
    addOccurrences(json, item);
    return json;
}

Json itemJson(const ReceivedCallItem& item) {
    Json json = headJson(item);
    addOccurrences(json, item);
    return json;
}

Json itemJson(const ForwardedCallItem& item) {
    Json json = headJson(item);
    addOccurrences(json, item);
    return json;
}

Json itemJson(const CallBackItem& item) {
    return Json{{"entryId", item.getEntryId()},
                {"firstName", item.getFirstname()},
                {"surname", item.getSurname()},
                {"displayName", fullName(item.getFirstname(), item.getSurname())},
                {"number", item.getNumber()},
                {"numberText", item.getNumber()},
                {"numberType", wordIn(kNumberTypes, item.getNumberType())},
                {"time", utcTime(item.getTimeDate())},
                {"type", wordIn(kCallBackTypes, item.getCallBackType())},
                {"state", wordIn(kCallBackStates, item.getCallBackState())},
                {"deviceId", item.getDeviceId()}};
}

Json itemJson(const Contact& contact) {
    Json json{{"id", contact.getUniqueId()}};
    for (const ContactField& field : contactFields()) {
        json[field.name] = field.get(contact);
    }
    return json;
}

std::string jsonText(const Json& json) {
    return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

}  // namespace host
