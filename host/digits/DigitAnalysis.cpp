#include "host/digits/DigitAnalysis.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>

#include "platform/client-utils/Utf8.h"
#include "platform/logging/Logging.h"

namespace host {
namespace {

constexpr std::size_t kLongestExtension = 5;
/// Increment it when `normalise` changes its results: stored indexes of numbers are then rebuilt.
constexpr const char* kRulesEdition = "2";

/// True for separators between digits. Address books and web pages also use blanks of other widths, dashes of
/// other lengths, and marks of the writing direction.
bool isSeparator(std::uint32_t character) {
    return (character < 0x80 &&
            std::string_view(" \t-./()").find(static_cast<char>(character)) != std::string_view::npos) ||
           character == 0xA0 || (character >= 0x2000 && character <= 0x2015) ||
           (character >= 0x202A && character <= 0x202F) || (character >= 0x2060 && character <= 0x2069) ||
           character == 0x2212 || character == 0xFEFF;
}

bool isDialled(char character) {
    return std::string_view("0123456789*#").find(character) != std::string_view::npos;
}

std::string withoutSeparators(std::string_view text) {
    std::string dialled;
    for (std::size_t at = 0; at < text.size();) {
        const utf8::Step step = utf8::next(text, at);
        if (!isSeparator(step.character)) {
            dialled += text.substr(at, step.length);
        }
        at += step.length;
    }
    return dialled;
}

bool isNumber(std::string_view dialled) {
    if (!dialled.empty() && dialled.front() == '+') {
        dialled.remove_prefix(1);
    }
    return !dialled.empty() && std::all_of(dialled.begin(), dialled.end(), isDialled);
}

std::vector<std::string> dialledCodes(const std::vector<std::string>& codes) {
    std::vector<std::string> dialled;
    for (const std::string& code : codes) {
        if (std::string digits = withoutSeparators(code); !digits.empty()) {
            dialled.push_back(std::move(digits));
        }
    }
    std::sort(dialled.begin(), dialled.end());
    return dialled;
}

bool beginsWithOneOf(const std::vector<std::string>& codes, const std::string& dialled) {
    return std::any_of(codes.begin(), codes.end(),
                       [&dialled](const std::string& code) { return dialled.rfind(code, 0) == 0; });
}

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
    if (!isNumber(form)) {
        return;
    }
    if (!isExtensionOrCode(form)) {
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

bool DigitAnalysis::isExtensionOrCode(const std::string& dialled) const {
    return dialled.find_first_of("*#") != std::string::npos ||
           (dialled.front() != '+' && dialled.size() <= kLongestExtension) ||
           beginsWithOneOf(m_codes, dialled);
}

}  // namespace host
