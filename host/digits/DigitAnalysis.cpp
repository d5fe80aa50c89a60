#include "host/digits/DigitAnalysis.h"

#include <optional>
#include <utility>

#include "host/digits/DialledText.h"
#include "platform/logging/Logging.h"

namespace host {
namespace {

/// Increment it when `normalise` changes its results: stored indexes of numbers are then rebuilt.
constexpr const char* kRulesEdition = "2";

}  // namespace

DigitAnalysis::DigitAnalysis(const std::string& region, const std::vector<std::string>& featureAccessCodes)
    : m_region(region), m_plan(region), m_codes(dialledCodes(featureAccessCodes)) {
    if (!m_plan.supportsRegion()) {
        logAppUni("Digits", __FILE_NAME__, 3, __LINE__,
                  "region %s is unknown: numbers without + are compared as they are dialled", region.c_str());
    }
}

bool DigitAnalysis::isFeatureAccessCode(const std::string& digits) {
    return beginsWithOneOf(m_codes, withoutSeparators(digits));
}

void DigitAnalysis::normalise(std::string& number) {
    if (std::optional<std::string> known = m_known.find(number)) {
        number = std::move(*known);
        return;
    }
    std::string form = withoutSeparators(number);
    if (!isDialledNumber(form)) {
        return;
    }
    if (!isExtensionOrCode(form, m_codes)) {
        if (std::optional<std::string> international = m_plan.international(form)) {
            form = std::move(*international);
        }
        m_known.store(number, form);
    }
    number = std::move(form);
}

std::string DigitAnalysis::rulesKey() const {
    std::string key = std::string(kRulesEdition) + " " + m_region;
    for (const std::string& code : m_codes) {
        key += " " + code;
    }
    return key;
}

}  // namespace host
