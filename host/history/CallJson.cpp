#include "host/history/CallJson.h"

#include <array>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <optional>

namespace host {
namespace {

using Json = nlohmann::ordered_json;

Json timeJson(const std::optional<std::chrono::sys_seconds>& time) {
    return time ? Json(utcText(*time)) : Json();
}

Json partyJson(const std::optional<Party>& party, std::string Party::*member) {
    return party ? Json((*party).*member) : Json();
}

}  // namespace

std::string utcText(std::chrono::sys_seconds time) {
    const auto day = std::chrono::floor<std::chrono::days>(time);
    const std::chrono::year_month_day date(day);
    const std::chrono::hh_mm_ss clock(time - day);
    std::array<char, 48> text{};
    const int length =
        std::snprintf(text.data(), text.size(), "%04d-%02u-%02uT%02d:%02d:%02dZ",
                      static_cast<int>(date.year()), static_cast<unsigned>(date.month()),
                      static_cast<unsigned>(date.day()), static_cast<int>(clock.hours().count()),
                      static_cast<int>(clock.minutes().count()), static_cast<int>(clock.seconds().count()));
    return {text.data(), static_cast<std::size_t>(length)};
}

Json callJson(const Call& call) {
    return Json{{"id", call.id},
                {"uniqueId", call.entry ? Json(std::to_string(*call.entry)) : Json()},
                {"list", std::string(wordOf(call.list))},
                {"direction", isOutgoing(call) ? "outgoing" : "incoming"},
                {"number", call.party.number},
                {"name", call.party.name},
                {"displayName", displayNameOf(call)},
                {"connectedNumber", partyJson(call.connected, &Party::number)},
                {"connectedName", partyJson(call.connected, &Party::name)},
                {"redirectingNumber", partyJson(call.redirecting, &Party::number)},
                {"redirectingName", partyJson(call.redirecting, &Party::name)},
                {"reason", std::string(wordOf(call.reason))},
                {"start", utcText(call.start)},
                {"answered", timeJson(call.established)},
                {"ended", timeJson(call.ended)},
                {"duration", call.duration.count()},
                {"endApproximate", call.endApproximate},
                {"lineKey", call.lineKey},
                {"callId", call.callId},
                {"viewed", call.viewed},
                {"calledBackAt", timeJson(call.calledBackAt)}};
}

}  // namespace host
