#include "host/digits/DigitAnalysis.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace host {
namespace {

bool isMark(char character) {
    return std::string_view(" \t-./()").find(character) != std::string_view::npos;
}
bool isDialled(char character) {
    return std::string_view("0123456789*#").find(character) != std::string_view::npos;
}

std::string withoutMarks(std::string_view text) {
    std::string dialled;
    std::copy_if(text.begin(), text.end(), std::back_inserter(dialled),
                 [](char each) { return !isMark(each); });
    return dialled;
}

bool isNumber(std::string_view dialled) {
    if (!dialled.empty() && dialled.front() == '+') {
        dialled.remove_prefix(1);
    }
    return !dialled.empty() && std::all_of(dialled.begin(), dialled.end(), isDialled);
}

/// Country codes begin with 1 to 9, so "000" is a number of its own.
bool beginsWithInternationalPrefix(std::string_view dialled) {
    return dialled.size() > 2 && dialled.substr(0, 2) == "00" && dialled[2] >= '1' && dialled[2] <= '9';
}

std::string withoutTrunkZero(std::string number) {
    const std::size_t at = number.find("(0)");
    const std::string before =
        at == std::string::npos ? "" : withoutMarks(std::string_view(number).substr(0, at));
    if (!before.empty() && (before.front() == '+' || beginsWithInternationalPrefix(before))) {
        number.erase(at, 3);
    }
    return number;
}

}  // namespace

DigitAnalysis::DigitAnalysis(const std::vector<std::string>& featureAccessCodes) {
    for (const std::string& code : featureAccessCodes) {
        if (std::string dialled = withoutMarks(code); !dialled.empty()) {
            m_codes.push_back(std::move(dialled));
        }
    }
}

bool DigitAnalysis::isFeatureAccessCode(const std::string& digits) {
    const std::string dialled = withoutMarks(digits);
    return std::any_of(m_codes.begin(), m_codes.end(),
                       [&dialled](const std::string& code) { return dialled.rfind(code, 0) == 0; });
}

void DigitAnalysis::normalise(std::string& number) {
    std::string dialled = withoutMarks(withoutTrunkZero(number));
    if (!isNumber(dialled)) {
        return;
    }
    if (beginsWithInternationalPrefix(dialled)) {
        dialled.replace(0, 2, "+");
    }
    number = std::move(dialled);
}

}  // namespace host
