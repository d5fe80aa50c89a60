#include "host/webhooks/EventMessage.h"

#include <chrono>
#include <nlohmann/json.hpp>
#include <string_view>

#include "host/history/CallJson.h"
#include "host/history/CallReader.h"
#include "host/journal-events/JournalEvent.h"
#include "host/presentation/ItemJson.h"
#include "journal-items/ListTraits.h"
#include "platform/digits/DigitAnalysisServiceIfc.h"

namespace host {
namespace {

using Json = nlohmann::ordered_json;
using std::chrono::sys_seconds;

sys_seconds timeOf(std::int64_t seconds) {
    return sys_seconds(std::chrono::seconds(seconds));
}

Json timeJson(const std::optional<std::int64_t>& seconds) {
    return seconds ? Json(utcText(timeOf(*seconds))) : Json();
}

Json envelope(const std::string& id, const Json& line, std::string_view event, sys_seconds time) {
    return {
        {"id", id}, {"line", line}, {"event", std::string(event)}, {"time", utcText(time)}, {"call", Json()}};
}

}  // namespace

EventMessage EventMessages::read(Query& row) {
    EventMessage message{.event = row.number()};
    const std::string line = row.text();
    const std::int64_t number = row.number();
    const std::string uid = row.text();
    const sys_seconds time = timeOf(row.number());
    if (number < 0 || number >= static_cast<std::int64_t>(kJournalEventKinds)) {
        return message;  // of a newer version
    }
    const auto kind = static_cast<JournalEventKind>(number);
    Json json = envelope(uid, line, wordOf(kind), time);
    const std::optional<std::int64_t> call = row.optionalNumber();
    const std::optional<std::int64_t> list = row.optionalNumber();
    const std::string callId = row.text();
    if (call) {
        const auto filed = CallReader(m_session, line).find(*call);
        if (!filed) {
            return message;
        }
        json["call"] = callJson(*filed);
    } else if (list) {
        json["list"] = std::string(wordOf(static_cast<ListName>(*list)));
    } else {
        Json& live = json["call"];
        live["callId"] = callId;
        live["device"] = row.text();
        live["direction"] = row.flag() ? "outgoing" : "incoming";
        const std::string party = row.text();
        const std::string name = row.text();
        const std::string contact = CallReader(m_session, line).contactName(lookupOf(party));
        live["number"] = party;
        live["name"] = name;
        live["displayName"] = contact.empty() ? name : contact;
        live["redirectingNumber"] = row.text();
        live["redirectingName"] = row.text();
        live["start"] = timeJson(row.optionalNumber());
        live["answered"] = timeJson(row.optionalNumber());
    }
    message.body = jsonText(json);
    return message;
}

std::string EventMessages::lookupOf(std::string number) const {
    if (m_digits != nullptr) {
        m_digits->normalise(number);
    }
    return number;
}

EventMessage droppedMessage(std::int64_t count, std::int64_t last) {
    const auto now = std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
    Json json = envelope("dropped-" + std::to_string(last), Json(), "events.dropped", now);
    json["dropped"] = count;
    return {.event = 0, .body = jsonText(json)};
}

}  // namespace host
