#pragma once

#include <string>
#include <vector>

#include "host/digits/NumberForms.h"
#include "host/digits/NumberingPlan.h"
#include "platform/digits/DigitAnalysisServiceIfc.h"
#include "platform/framework/Executable.h"

namespace host {

/// Dialling rules from the configuration, registered as "DigitAnalysisServiceIfc".
///
/// The rules are constant after construction. Thread-safe.
class DigitAnalysis final : public Executable, public DigitAnalysisServiceIfc {
public:
    /// `region` is the country of the numbering plan, as two capital letters. An unsupported region is
    /// logged; national numbers then get no international form. The codes are as dialled ("*61"); empty ones
    /// are ignored.
    DigitAnalysis(const std::string& region, const std::vector<std::string>& featureAccessCodes);

    /// True if the digits begin with one of the codes, since a code is dialled alone or before a number.
    /// Ignores blanks and other separators.
    [[nodiscard]] bool isFeatureAccessCode(const std::string& digits) override;

    /// Converts all spellings of one number to the same form:
    ///  1. Removes blanks, dashes, dots, slashes, parentheses and invisible characters. A text with other
    ///     characters than these, digits, "*" and "#" (an address, a name), or with a "+" after its start, is
    ///     not a number and is unchanged.
    ///  2. Leaves extensions (up to five digits), and numbers that contain "*" or "#" or begin with a feature
    ///     access code, as dialled.
    ///  3. Converts numbers of the numbering plan to their international form: in Germany, "030 1234", "0049
    ///     30 1234" and "+49 (0)30 1234" become "+49301234". Leaves all others as dialled, for example a
    ///     local number without area code, or more than `limits::kMaxDigits` digits.
    void normalise(std::string& number) override;

    /// Returns a key of the rules. Objects with equal keys normalise every number alike.
    [[nodiscard]] std::string rulesKey() const;

private:
    // Constant after construction.
    const std::string m_region;
    const NumberingPlan m_plan;
    /// Without separators.
    const std::vector<std::string> m_codes;

    // Thread-safe. Never outdated, since the rules are constant.
    NumberForms m_known;
};

}  // namespace host
