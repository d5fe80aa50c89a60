#include "bench/calls/CallPlan.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <stdexcept>
#include <utility>

namespace bench {

namespace {

std::string padded(std::size_t number, std::size_t digits) {
    const std::string text = std::to_string(number);
    return std::string(digits - std::min(digits, text.size()), '0') + text;
}

}  // namespace

std::string CallPlan::callId(std::size_t call) const {
    const std::string number = idPrefix + padded(call, 6);
    return decimalIds ? number : "call-" + number + "@switch";
}

std::string CallPlan::numberOf(std::size_t party) {
    return std::string(kNumberPrefix) + padded(party, kDigits);
}

std::string CallPlan::nameOf(std::size_t party) {
    static constexpr std::array<std::string_view, 8> names = {"Ada Miller",  "Bruno Weber", "Clara Novak",
                                                              "David Brown", "Elif Yilmaz", "Felix Rossi",
                                                              "Greta Lind",  "Hugo Martin"};
    return std::string(names[party % names.size()]) + ' ' + std::to_string(party);
}

std::optional<std::size_t> CallPlan::partyIn(std::string_view text) {
    if (!text.starts_with(kNumberPrefix) || text.size() < kNumberPrefix.size() + kDigits) {
        return std::nullopt;
    }
    const char* const begin = text.data() + kNumberPrefix.size();
    std::size_t party = 0;
    const auto [end, error] = std::from_chars(begin, begin + kDigits, party);
    return error == std::errc() && end == begin + kDigits ? std::optional(party) : std::nullopt;
}

CallKind callKindNamed(std::string_view name) {
    static constexpr std::array<std::pair<std::string_view, CallKind>, 4> kinds = {
        {{"received", CallKind::eReceived},
         {"missed", CallKind::eMissed},
         {"dialled", CallKind::eDialled},
         {"forwarded", CallKind::eForwarded}}};
    for (const auto& [each, kind] : kinds) {
        if (each == name) {
            return kind;
        }
    }
    throw std::invalid_argument("no kind of call: " + std::string(name));
}

}  // namespace bench
