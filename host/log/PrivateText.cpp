#include "host/log/PrivateText.h"

#include <algorithm>
#include <atomic>
#include <cstddef>

namespace host {
namespace {

std::atomic<Parties> g_parties{Parties::eShown};

/// An extension has three digits or more.
constexpr std::size_t kShortestNumber = 3;

bool isDigit(char each) {
    return each >= '0' && each <= '9';
}

/// Also every byte of a character beyond ASCII.
bool isLetter(char each) {
    return (each >= 'a' && each <= 'z') || (each >= 'A' && each <= 'Z') ||
           static_cast<unsigned char>(each) >= 0x80;
}

std::string masked(std::string_view text, std::size_t shortestNumber, bool alsoWords) {
    std::string result;
    while (!text.empty()) {
        const auto kind = isDigit(text.front()) ? &isDigit : &isLetter;
        const auto length =
            static_cast<std::size_t>(std::find_if_not(text.begin(), text.end(), kind) - text.begin());
        const std::string_view part = text.substr(0, std::max<std::size_t>(length, 1));
        if (kind == &isDigit && length >= shortestNumber) {
            result += maskedNumber(part);
        } else if (kind == &isLetter && length > 0 && alsoWords) {
            result += maskedName(part);
        } else {
            result += part;
        }
        text.remove_prefix(part.size());
    }
    return result;
}

}  // namespace

Parties loggedParties() noexcept {
    return g_parties.load(std::memory_order_relaxed);
}

void setLoggedParties(Parties parties) noexcept {
    g_parties = parties;
}

std::string maskedNumber(std::string_view number) {
    constexpr std::size_t kShown = 2;
    if (number.empty()) {
        return {};
    }
    return "**" + std::string(number.size() > kShown ? number.substr(number.size() - kShown) : "");
}

std::string maskedName(std::string_view name) {
    return name.empty() ? "" : "***";
}

std::string maskedText(std::string_view text) {
    return masked(text, kShortestNumber, true);
}

std::string withMaskedNumbers(std::string_view text) {
    return masked(text, 5, false);
}

std::string loggedNumber(std::string_view number) {
    return loggedParties() == Parties::eShown ? std::string(number) : maskedNumber(number);
}

std::string loggedText(std::string_view text) {
    return loggedParties() == Parties::eShown ? std::string(text) : maskedText(text);
}

std::string loggedReason(std::string_view text) {
    return loggedParties() == Parties::eShown ? std::string(text) : masked(text, kShortestNumber, false);
}

}  // namespace host
