#include "host/call-files/CallCalendar.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <optional>
#include <utility>

#include "host/call-files/CallTime.h"
#include "host/history/CallJson.h"

namespace host {
namespace {

using Json = nlohmann::ordered_json;

constexpr std::size_t kMaxLineBytes = 75;

std::string textIn(const Json& call, const char* member) {
    const auto found = call.find(member);
    return found != call.end() && found->is_string() ? found->get<std::string>() : std::string();
}

std::optional<std::chrono::sys_seconds> timeIn(const Json& call, const char* member) {
    return timeOf(textIn(call, member), {});
}

std::chrono::seconds durationIn(const Json& call) {
    const auto found = call.find("duration");
    return std::chrono::seconds(found != call.end() && found->is_number_integer() ? found->get<std::int64_t>()
                                                                                  : 0);
}

/// The number of bytes, at most `limit`, that do not end inside a UTF-8 character.
std::size_t wholeCharacters(std::string_view text, std::size_t limit) {
    std::size_t count = limit;
    while (count > 0 && (static_cast<unsigned char>(text[count]) & 0xC0U) == 0x80U) {
        --count;
    }
    return count > 0 ? count : limit;
}

std::string folded(std::string_view text) {
    std::string lines;
    std::size_t limit = kMaxLineBytes;
    while (text.size() > limit) {
        const std::size_t count = wholeCharacters(text, limit);
        lines.append(text.substr(0, count)).append("\r\n ");
        text.remove_prefix(count);
        limit = kMaxLineBytes - 1;  // the blank counts
    }
    return lines.append(text).append("\r\n");
}

/// A value of the type TEXT.
std::string escaped(std::string_view text) {
    std::string value;
    for (const char letter : text) {
        if (letter == '\n') {
            value += "\\n";
        } else if (static_cast<unsigned char>(letter) >= 0x20 && letter != 0x7F) {
            value.append(letter == '\\' || letter == ';' || letter == ',' ? "\\" : "").append(1, letter);
        }
    }
    return value;
}

/// "20261121T052205Z".
std::string calendarTime(std::chrono::sys_seconds time) {
    std::string text = utcText(time);
    std::erase_if(text, [](char letter) { return letter == '-' || letter == ':'; });
    return text;
}

std::string partyIn(const Json& call) {
    for (const char* const member : {"displayName", "name", "number"}) {
        if (std::string text = textIn(call, member); !text.empty()) {
            return text;
        }
    }
    return "unknown";
}

std::string summaryOf(const Json& call) {
    const std::string list = textIn(call, "list");
    return (list == "missed"      ? "Missed call from "
            : list == "dialled"   ? "Call to "
            : list == "forwarded" ? "Forwarded call from "
                                  : "Call from ") +
           partyIn(call);
}

std::string descriptionOf(const Json& call) {
    std::string text = "Number: " + textIn(call, "number");
    if (const auto duration = durationIn(call); duration.count() > 0) {
        text += "\nDuration: " + durationText(duration);
    }
    for (const auto& [member, title] :
         {std::pair{"connectedNumber", "Connected to: "}, {"redirectingNumber", "Redirected by: "}}) {
        if (const std::string number = textIn(call, member); !number.empty()) {
            text.append("\n").append(title).append(number);
        }
    }
    return text;
}

}  // namespace

std::string calendarBegin() {
    return "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//calljournal//calls//EN\r\n";
}

std::string calendarEvent(const Json& call, std::string_view line) {
    const auto start = timeIn(call, "start");
    if (!start) {
        return {};
    }
    const auto end = timeIn(call, "ended").value_or(*start + durationIn(call));
    std::string event = "BEGIN:VEVENT\r\n";
    event += folded("UID:call-" + call.value("id", Json(0)).dump() + "@" + escaped(line));
    event += folded("DTSTAMP:" + calendarTime(*start)) + folded("DTSTART:" + calendarTime(*start));
    if (end > *start) {  // an end must be later than the start
        event += folded("DTEND:" + calendarTime(end));
    }
    event += folded("SUMMARY:" + escaped(summaryOf(call)));
    event += folded("DESCRIPTION:" + escaped(descriptionOf(call)));
    return event + "TRANSP:TRANSPARENT\r\nEND:VEVENT\r\n";
}

std::string calendarEnd() {
    return "END:VCALENDAR\r\n";
}

}  // namespace host
