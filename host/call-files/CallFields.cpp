#include "host/call-files/CallFields.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <optional>
#include <string_view>
#include <utility>

#include "host/limits/TextLimits.h"
#include "host/text-files/FileText.h"

namespace host {
namespace {

using Json = nlohmann::ordered_json;

/// The outcome of a call: of a call-detail record that names no list.
enum class Outcome { eUnknown, eConnected, eUnconnected, eForwarded };

template <typename Value, std::size_t Size>
using Words = std::array<std::pair<std::string_view, Value>, Size>;

constexpr Words<Outcome, 41> kOutcomes{{
    {"answered", Outcome::eConnected},
    {"answer", Outcome::eConnected},
    {"completed", Outcome::eConnected},
    {"connected", Outcome::eConnected},
    {"success", Outcome::eConnected},
    {"normal clearing", Outcome::eConnected},
    {"true", Outcome::eConnected},
    {"yes", Outcome::eConnected},
    {"1", Outcome::eConnected},
    {"no answer", Outcome::eUnconnected},
    {"noanswer", Outcome::eUnconnected},
    {"unanswered", Outcome::eUnconnected},
    {"not answered", Outcome::eUnconnected},
    {"no user response", Outcome::eUnconnected},
    {"busy", Outcome::eUnconnected},
    {"user busy", Outcome::eUnconnected},
    {"failed", Outcome::eUnconnected},
    {"failure", Outcome::eUnconnected},
    {"cancel", Outcome::eUnconnected},
    {"canceled", Outcome::eUnconnected},
    {"cancelled", Outcome::eUnconnected},
    {"originator cancel", Outcome::eUnconnected},
    {"congestion", Outcome::eUnconnected},
    {"rejected", Outcome::eUnconnected},
    {"call rejected", Outcome::eUnconnected},
    {"declined", Outcome::eUnconnected},
    {"abandoned", Outcome::eUnconnected},
    {"unavailable", Outcome::eUnconnected},
    {"chanunavail", Outcome::eUnconnected},
    {"timeout", Outcome::eUnconnected},
    {"voicemail", Outcome::eUnconnected},
    {"lost", Outcome::eUnconnected},
    {"false", Outcome::eUnconnected},
    {"no", Outcome::eUnconnected},
    {"0", Outcome::eUnconnected},
    {"forward", Outcome::eForwarded},
    {"diverted", Outcome::eForwarded},
    {"redirected", Outcome::eForwarded},
    {"deflected", Outcome::eForwarded},
    {"transferred", Outcome::eForwarded},
    {"forwarded call", Outcome::eForwarded},
}};

/// True for an outgoing call.
constexpr Words<bool, 15> kDirections{{
    {"incoming", false},
    {"inbound", false},
    {"in", false},
    {"i", false},
    {"received", false},
    {"terminating", false},
    {"terminated", false},
    {"outgoing", true},
    {"outbound", true},
    {"out", true},
    {"o", true},
    {"dialled", true},
    {"dialed", true},
    {"originating", true},
    {"originated", true},
}};

constexpr Words<bool, 6> kFlags{
    {{"true", true}, {"1", true}, {"yes", true}, {"false", false}, {"0", false}, {"no", false}}};

/// Words are compared without case, and with "_" and "-" as blanks.
std::string wordIn(std::string_view text) {
    std::string word = lower(stripped(text));
    std::replace_if(
        word.begin(), word.end(), [](char letter) { return letter == '_' || letter == '-'; }, ' ');
    return word;
}

template <typename Value, std::size_t Size>
std::optional<Value> find(const Words<Value, Size>& words, std::string_view text) {
    const auto found = std::find_if(words.begin(), words.end(),
                                    [word = wordIn(text)](const auto& each) { return each.first == word; });
    return found == words.end() ? std::nullopt : std::optional(found->second);
}

/// A number without the characters that only separate its digits.
std::string digitsOf(std::string number) {
    std::erase_if(number,
                  [](char letter) { return std::string_view(" -/().").find(letter) != std::string::npos; });
    return number;
}

bool isNumberMember(std::string_view member) {
    constexpr std::array<std::string_view, 6> kNumbers{"number",  "connectedNumber", "redirectingNumber",
                                                       "calling", "called",          "lineKey"};
    return std::find(kNumbers.begin(), kNumbers.end(), member) != kNumbers.end();
}

/// Reads the members of one call.
class CallBuilder {
public:
    CallBuilder(const CallFields& fields, const CallReading& reading)
        : m_fields(fields), m_reading(reading) {}

    [[nodiscard]] Call build() {
        readTimes();
        readTexts();
        decideList();
        if (m_call.list == ListName::eMissed || m_outcome == Outcome::eUnconnected) {
            // A record may count the time of ringing.
            m_call.duration = std::chrono::seconds(0);
        }
        readParty();
        m_call.id = numberIn("id");
        m_call.endApproximate = flagIn("endApproximate").value_or(false);
        m_call.viewed = flagIn("viewed").value_or(m_call.list != ListName::eMissed);
        return std::move(m_call);
    }

private:
    /// The member's text; empty if the call has none.
    [[nodiscard]] const std::string& textIn(std::string_view member) const {
        static const std::string kNone;
        const auto found = m_fields.find(member);
        if (found == m_fields.end()) {
            return kNone;
        }
        const std::size_t limit = isNumberMember(member) ? limits::kNumberBytes : limits::kNameBytes;
        if (found->second.size() > limit) {
            throw CallFieldError(limits::tooLong(member, limit));
        }
        return found->second;
    }

    [[noreturn]] void refuse(std::string_view member, const char* why) const {
        throw CallFieldError(std::string(member) + " " + why + ": " + textIn(member));
    }

    [[nodiscard]] std::optional<std::chrono::sys_seconds> timeIn(std::string_view member) const {
        const std::string& text = textIn(member);
        if (text.empty()) {
            return std::nullopt;
        }
        const auto time = timeOf(text, m_reading.time);
        if (!time) {
            refuse(member, "is no time");
        }
        return time;
    }

    [[nodiscard]] std::optional<bool> flagIn(std::string_view member) const {
        const std::string& text = textIn(member);
        const auto flag = find(kFlags, text);
        if (!flag && !text.empty()) {
            refuse(member, "is neither true nor false");
        }
        return flag;
    }

    [[nodiscard]] std::int64_t numberIn(std::string_view member) const {
        const std::string& text = textIn(member);
        std::int64_t number = 0;
        const auto end = std::from_chars(text.data(), text.data() + text.size(), number);
        if (!text.empty() && (end.ec != std::errc() || end.ptr != text.data() + text.size() || number < 0)) {
            refuse(member, "is no number");
        }
        return number;
    }

    [[nodiscard]] std::optional<Party> partyIn(std::string_view number, std::string_view name) const {
        Party party{textIn(number), textIn(name)};
        return party == Party() ? std::nullopt : std::optional(std::move(party));
    }

    void readTimes() {
        const auto start = timeIn("start");
        if (!start) {
            throw CallFieldError("start is missing");
        }
        m_call.start = *start;
        m_call.ended = timeIn("ended");
        m_call.calledBackAt = timeIn("calledBackAt");
        // A record may have a yes or no instead of the time.
        m_outcome = find(kOutcomes, textIn("answered")).value_or(Outcome::eUnknown);
        if (m_outcome == Outcome::eUnknown) {
            m_call.established = timeIn("answered");
        }
        if (const std::string& text = textIn("duration"); !text.empty()) {
            const auto duration = durationOf(text);
            if (!duration) {
                refuse("duration", "is neither seconds nor h:mm:ss");
            }
            m_call.duration = *duration;
        }
    }

    void readTexts() {
        m_call.connected = partyIn("connectedNumber", "connectedName");
        m_call.redirecting = partyIn("redirectingNumber", "redirectingName");
        m_call.lineKey = textIn("lineKey");
        m_call.callId = textIn("callId");
        const auto reason = callReasonNamed(textIn("reason"));
        if (!reason) {
            refuse("reason", "is unknown");
        }
        m_call.reason = *reason;
    }

    /// The direction; std::nullopt if the record does not say it.
    [[nodiscard]] std::optional<bool> outgoing() const {
        if (const std::string& text = textIn("direction"); !text.empty()) {
            if (const auto direction = find(kDirections, text)) {
                return direction;
            }
            if (m_reading.ownNumber.empty() || !m_fields.contains("calling")) {
                refuse("direction", "is unknown");
            }
        }
        if (m_fields.contains("calling") || m_fields.contains("called")) {
            return digitsOf(textIn("calling")) == digitsOf(m_reading.ownNumber);
        }
        return std::nullopt;
    }

    void decideList() {
        const std::string& text = textIn("list");
        const auto direction = outgoing();
        const auto named = listNamed(wordIn(text));
        if (named && *named != ListName::eCallbacks) {
            m_call.list = *named;
            if (direction && *direction != isOutgoing(m_call)) {
                refuse("list", "is of another direction than the call");
            }
            return;
        }
        if (!text.empty()) {
            const auto outcome = find(kOutcomes, text);
            if (!outcome) {
                refuse("list", "is unknown");
            }
            m_outcome = *outcome;
        }
        m_call.list = listOf(direction.value_or(false));
    }

    [[nodiscard]] ListName listOf(bool outgoing) const {
        if (outgoing) {
            return ListName::eDialled;
        }
        if (m_outcome == Outcome::eForwarded) {
            return ListName::eForwarded;
        }
        const bool connected = m_outcome == Outcome::eConnected ||
                               (m_outcome == Outcome::eUnknown &&
                                (m_call.established.has_value() || m_call.duration.count() > 0));
        return connected ? ListName::eReceived : ListName::eMissed;
    }

    void readParty() {
        m_call.party = {textIn("number"), textIn("name")};
        const bool hasNumbers = m_fields.contains("calling") || m_fields.contains("called");
        if (m_call.party.number.empty() && hasNumbers) {
            m_call.party.number = textIn(isOutgoing(m_call) ? "called" : "calling");
            if (isOutgoing(m_call)) {
                m_call.party.name.clear();  // it is the caller's, who is the owner of the line
            }
        }
    }

    const CallFields& m_fields;
    const CallReading& m_reading;
    Call m_call{};
    Outcome m_outcome = Outcome::eUnknown;
};

}  // namespace

CallFields callFieldsOf(const Json& object) {
    CallFields fields;
    for (const auto& [name, value] : object.items()) {
        if (value.is_structured()) {
            throw CallFieldError(name + " is neither a text nor a number");
        }
        std::string text = value.is_string() ? value.get<std::string>() : value.is_null() ? "" : value.dump();
        if (!text.empty()) {
            fields.emplace(name, std::move(text));
        }
    }
    return fields;
}

Call callOf(const CallFields& fields, const CallReading& reading) {
    return CallBuilder(fields, reading).build();
}

}  // namespace host
