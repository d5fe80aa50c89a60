#include "host/digits/NumberingPlan.h"

#include <phonenumbers/phonenumber.pb.h>
#include <phonenumbers/phonenumberutil.h>
#include <phonenumbers/shortnumberinfo.h>

#include <algorithm>
#include <iterator>
#include <set>
#include <utility>

#include "host/limits/TextLimits.h"

namespace host {
namespace {

using i18n::phonenumbers::PhoneNumber;
using i18n::phonenumbers::PhoneNumberUtil;

const PhoneNumberUtil& plans() {
    return *PhoneNumberUtil::GetInstance();
}

bool isSupported(const std::string& region) {
    std::set<std::string> regions;
    plans().GetSupportedRegions(&regions);
    return regions.contains(region);
}

std::string trunkPrefixOf(const std::string& region) {
    std::string prefix;
    plans().GetNddPrefixForRegion(region, true, &prefix);
    return prefix;
}

std::string formatted(const PhoneNumber& number, PhoneNumberUtil::PhoneNumberFormat format) {
    std::string text;
    plans().Format(number, format, &text);
    return text;
}

std::string digitsOf(const std::string& text) {
    std::string digits;
    std::copy_if(text.begin(), text.end(), std::back_inserter(digits),
                 [](char each) { return each >= '0' && each <= '9'; });
    return digits;
}

std::string nationalDigits(const PhoneNumber& number) {
    return digitsOf(formatted(number, PhoneNumberUtil::NATIONAL));
}

bool isInternational(const PhoneNumber& number) {
    return number.country_code_source() == PhoneNumber::FROM_NUMBER_WITH_PLUS_SIGN ||
           number.country_code_source() == PhoneNumber::FROM_NUMBER_WITH_IDD;
}

/// True if reading the international form again yields the same form. Numbers with superfluous zeros lose one
/// each time.
bool isStable(const std::string& international) {
    PhoneNumber again;
    return plans().Parse(international, "ZZ", &again) == PhoneNumberUtil::NO_PARSING_ERROR &&
           formatted(again, PhoneNumberUtil::E164) == international;
}

}  // namespace

void NumberingPlan::load() {
    static_cast<void>(plans());
}

NumberingPlan::NumberingPlan(std::string region)
    : m_region(std::move(region)),
      m_supported(isSupported(m_region)),
      m_trunkPrefix(trunkPrefixOf(m_region)) {}

std::optional<std::string> NumberingPlan::international(const std::string& dialled) const {
    PhoneNumber number;
    if (!read(dialled, number)) {
        return std::nullopt;
    }
    std::string found = formatted(number, PhoneNumberUtil::E164);
    // A number with "+" is read alike in every region.
    return found == dialled || isStable(found) ? std::optional(std::move(found)) : std::nullopt;
}

bool NumberingPlan::read(const std::string& dialled, PhoneNumber& number) const {
    return dialled.size() <= limits::kMaxDigits + 1 &&  // with "+"
           plans().ParseAndKeepRawInput(dialled, m_region, &number) == PhoneNumberUtil::NO_PARSING_ERROR &&
           isUnderstood(dialled, number);
}

bool NumberingPlan::isUnderstood(const std::string& dialled, const PhoneNumber& number) const {
    // In the order of their costs.
    const bool possible = plans().IsPossibleNumberWithReason(number) == PhoneNumberUtil::IS_POSSIBLE;
    if (possible && isInternational(number)) {
        return true;
    }
    std::string significant;
    plans().GetNationalSignificantNumber(number, &significant);
    return (possible && !m_trunkPrefix.empty() && dialled == m_trunkPrefix + significant) ||
           (plans().IsValidNumber(number) && dialled == nationalDigits(number));
}

std::string NumberingPlan::dialledFrom(const std::string& international) const {
    PhoneNumber number;
    if (!m_supported || plans().Parse(international, "ZZ", &number) != PhoneNumberUtil::NO_PARSING_ERROR) {
        return international;
    }
    std::string text;
    plans().FormatOutOfCountryCallingNumber(number, m_region, &text);
    std::string digits = text.starts_with("+") ? "+" : "";
    return digits += digitsOf(text);
}

std::optional<std::string> NumberingPlan::written(const std::string& international) const {
    PhoneNumber number;
    if (!international.starts_with('+') || !read(international, number) ||
        formatted(number, PhoneNumberUtil::E164) != international) {
        return std::nullopt;
    }
    const bool isOwn = m_supported && number.country_code() == plans().GetCountryCodeForRegion(m_region);
    return formatted(number, isOwn ? PhoneNumberUtil::NATIONAL : PhoneNumberUtil::INTERNATIONAL);
}

bool NumberingPlan::isEmergencyNumber(const std::string& dialled) const {
    static const i18n::phonenumbers::ShortNumberInfo shortNumbers;
    // Many networks take these two in every country.
    if (dialled == "112" || dialled == "911") {
        return true;
    }
    return m_supported && shortNumbers.IsEmergencyNumber(dialled, m_region);
}

}  // namespace host
