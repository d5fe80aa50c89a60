#include "host/digits/Dialling.h"

#include <algorithm>
#include <utility>

#include "host/csta-wire/DeviceText.h"
#include "host/digits/DialledText.h"
#include "host/limits/TextLimits.h"

namespace host {
namespace {

bool beginsWith(std::string_view text, std::string_view scheme) {
    return text.size() > scheme.size() &&
           std::equal(scheme.begin(), scheme.end(), text.begin(),
                      [](char expected, char each) { return expected == (each | 0x20) || expected == each; });
}

/// The text as a SIP address, if it is one with a valid port. A user with a host, as the lists show SIP
/// parties, gets the scheme.
std::optional<std::string> sipAddress(std::string_view text) {
    const bool hasScheme = beginsWith(text, "sip:") || beginsWith(text, "sips:");
    const std::size_t at = text.find('@');
    const bool hasHost = at != std::string_view::npos && at > 0 && at + 1 < text.size();
    const bool isValid = std::none_of(text.begin(), text.end(), [](char each) {
        return static_cast<unsigned char>(each) <= ' ' || each == '<' || each == '>' || each == '"';
    });
    if (!isValid || (!hasScheme && !hasHost)) {
        return std::nullopt;
    }
    std::string address = (hasScheme ? "" : "sip:") + std::string(text);
    return hasValidPort(address) ? std::optional(std::move(address)) : std::nullopt;
}

/// The possible lengths of a code of the network at the begin: "*31#", "#31#", "*67", which hide the number
/// of the caller, for example.
std::vector<std::size_t> serviceCodes(std::string_view dialled) {
    constexpr std::size_t kMostDigits = 3;
    std::vector<std::size_t> lengths;
    const std::size_t digits = dialled.find_first_not_of("*#");
    if (digits == 0 || digits > 2) {
        return lengths;
    }
    for (std::size_t end = digits + 1; end <= std::min(digits + kMostDigits, dialled.size()); ++end) {
        if (dialled[end - 1] < '0' || dialled[end - 1] > '9') {
            break;
        }
        const bool hasEnd = end < dialled.size() && (dialled[end] == '#' || dialled[end] == '*');
        lengths.push_back(end + (hasEnd ? 1 : 0));
    }
    return lengths;
}

Dialling::Rules dialled(Dialling::Rules rules) {
    rules.featureAccessCodes = dialledCodes(rules.featureAccessCodes);
    return rules;
}

}  // namespace

Dialling::Dialling(Rules rules) : m_rules(dialled(std::move(rules))), m_plan(m_rules.region) {}

std::optional<Dialling::Target> Dialling::target(std::string_view text) const {
    if (text.size() > limits::kNumberBytes) {
        return std::nullopt;
    }
    if (std::optional<std::string> address = sipAddress(text)) {
        const bool isEmergency = reachesEmergencyService(parseDeviceText(*address).number);
        return Target{std::move(*address), isEmergency};
    }
    if (beginsWith(text, "tel:")) {
        text.remove_prefix(4);
        text = text.substr(0, text.find(';'));
    }
    std::string number = withoutSeparators(text);
    if (!isDialledNumber(number) || number.size() > limits::kMaxDigits + 1) {
        return std::nullopt;
    }
    if (reachesEmergencyService(number)) {
        return Target{std::move(number), true};
    }
    const auto international =
        isExtensionOrCode(number, m_rules.featureAccessCodes) ? std::nullopt : m_plan.international(number);
    if (international) {
        const bool isNational = m_rules.form == DialForm::eNational;
        number = isNational ? m_plan.dialledFrom(*international) : *international;
        if (number.front() != '+') {
            number.insert(0, m_rules.outsideLine);
        }
    }
    return Target{std::move(number), false};
}

bool Dialling::reachesEmergencyService(const std::string& dialled) const {
    std::vector<std::string> prefixes = m_rules.featureAccessCodes;
    prefixes.push_back(m_rules.outsideLine);
    // Not numbers of the plan; but some switches and networks drop such a prefix.
    prefixes.insert(prefixes.end(), {"+", "0"});
    // The position after each sequence of prefixes.
    std::vector<bool> reached(dialled.size() + 1);
    reached[0] = true;
    for (std::size_t at = 0; at < dialled.size(); ++at) {
        if (!reached[at]) {
            continue;
        }
        const std::string rest = dialled.substr(at);
        if (m_plan.isEmergencyNumber(rest)) {
            return true;
        }
        for (const std::string& prefix : prefixes) {
            reached[at + (rest.starts_with(prefix) ? prefix.size() : 0)] = true;
        }
        for (const std::size_t size : serviceCodes(rest)) {
            reached[at + size] = true;
        }
    }
    return false;
}

}  // namespace host
