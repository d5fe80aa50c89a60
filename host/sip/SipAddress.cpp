#include "host/sip/SipAddress.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstddef>

#include "host/csta-wire/DeviceText.h"
#include "host/csta-wire/XmlText.h"
#include "platform/client-utils/PercentEncoding.h"

namespace host {

namespace {

constexpr std::string_view kSeparators = " -()/.";

bool isIn(std::string_view set, char c) {
    return set.find(c) != std::string_view::npos;
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

bool isPhoneNumber(std::string_view text) {
    return std::any_of(text.begin(), text.end(), isDigit) &&
           std::all_of(text.begin(), text.end(),
                       [](char c) { return isDigit(c) || isIn("+*#", c) || isIn(kSeparators, c); });
}

std::string lowered(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(),
                   [](char c) { return static_cast<char>(std::tolower(static_cast<unsigned char>(c))); });
    return result;
}

bool isWithheld(const std::string& user) {
    static constexpr std::array<std::string_view, 4> kWords{"anonymous", "restricted", "unavailable",
                                                            "unknown"};
    return user.empty() || std::find(kWords.begin(), kWords.end(), lowered(user)) != kWords.end();
}

/// A peer without a user. Its number is the whole address, because a host may look like a telephone number.
SwitchParty hostParty(std::string_view uri, std::string_view name) {
    const std::size_t colon = uri.find(':');
    const std::string scheme = lowered(uri.substr(0, colon));
    std::string host = colon == std::string_view::npos ? std::string() : lowered(uri.substr(colon + 1));
    host = host.substr(0, host.find_first_of(";?>"));
    if ((scheme != "sip" && scheme != "sips") || host.empty() || host.ends_with(".invalid") ||
        host.find('@') != std::string::npos) {
        return {.number = {}, .name = {}, .anonymous = true};
    }
    const std::string_view given = trimmed(name);
    return {.number = scheme + ':' + host, .name = given.empty() ? host : std::string(given)};
}

}  // namespace

bool hasPassword(std::string_view text) noexcept {
    const std::string_view user = text.substr(0, text.find('@'));
    return std::count(user.begin(), user.end(), ':') > 1;
}

bool canBeReached(std::string_view text) {
    constexpr std::string_view kTransport = ";transport=";
    const std::string address = lowered(text);
    const std::size_t found = address.find(kTransport);
    if (found != std::string::npos) {
        const std::size_t begin = found + kTransport.size();
        const std::string transport = address.substr(begin, address.find_first_of(";?>", begin) - begin);
        if (transport != "udp" && transport != "tcp" && transport != "tls") {
            return false;
        }
    }
    return hasValidPort(address);
}

std::optional<SipAddress> parseSipAddress(std::string_view text) {
    SipAddress address;
    const std::size_t colon = text.find(':');
    const std::size_t at = text.find('@');
    if (colon == std::string_view::npos || at == std::string_view::npos || at < colon) {
        return std::nullopt;
    }
    address.scheme = lowered(text.substr(0, colon));
    std::string_view user = text.substr(colon + 1, at - colon - 1);
    user = user.substr(0, user.find_first_of(";:"));
    address.user = percentencoding::decode(user);
    const std::string_view rest = text.substr(at + 1);
    address.host = lowered(rest.substr(0, rest.find_first_of(";?>")));
    const bool valid = (address.scheme == "sip" || address.scheme == "sips") && !address.user.empty() &&
                       !address.host.empty();
    return valid ? std::optional(address) : std::nullopt;
}

/// It has no characters that end a number in its bracket form.
std::string deviceOf(const SipAddress& address) {
    std::string number = address.user;
    std::replace_if(
        number.begin(), number.end(),
        [](char c) { return isIn("!&/%;<>\" ", c) || static_cast<unsigned char>(c) < ' '; }, '_');
    return number;
}

SwitchParty partyOf(std::string_view uri, std::string_view name) {
    const std::optional<SipAddress> address = parseSipAddress(uri);
    if (!address) {
        return hostParty(uri, name);
    }
    if (isWithheld(address->user)) {
        return {.number = {}, .name = {}, .anonymous = true};
    }
    std::string number = deviceOf(*address);
    if (!isPhoneNumber(address->user)) {
        number += '@' + address->host;
    }
    return {.number = number, .name = std::string(trimmed(name))};
}

std::optional<std::string> dialText(std::string_view number) {
    // The telephone's longest command has 255 bytes.
    constexpr std::size_t kMostBytes = 200;
    std::string text(trimmed(number));
    if (lowered(text.substr(0, 4)) == "tel:") {
        text = text.substr(4, text.find(';') - 4);
    }
    if (isPhoneNumber(text)) {
        text.erase(std::remove_if(text.begin(), text.end(), [](char c) { return isIn(kSeparators, c); }),
                   text.end());
        for (std::size_t hash = text.find('#'); hash != std::string::npos; hash = text.find('#')) {
            text.replace(hash, 1, "%23");
        }
    }
    // The telephone takes the host of an address without a user for a user at its own host.
    const std::string scheme = text.substr(0, text.find(':'));
    const bool hasUser = (lowered(scheme) != "sip" && lowered(scheme) != "sips") || parseSipAddress(text);
    const bool valid = hasUser && !text.empty() && text.size() <= kMostBytes && isXmlUtf8(text) &&
                       text.find_first_of(" \t\r\n\"<>,'") == std::string::npos;
    return valid ? std::optional(text) : std::nullopt;
}

std::string cstaCallId(std::string_view sipId, bool outgoing) {
    constexpr std::string_view kHex = "0123456789abcdef";
    std::string id;
    for (const char c : sipId) {
        const auto byte = static_cast<unsigned char>(c);
        if (std::isalnum(byte) != 0 || c == '-' || c == '.') {
            id += c;
        } else {
            id.append({'_', kHex[byte / 16U], kHex[byte % 16U]});
        }
    }
    return id + (outgoing ? "_o" : "_i");
}

}  // namespace host
