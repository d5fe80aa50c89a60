#pragma once

#include <string>
#include <vector>

#include "host/digits/NumberingPlan.h"
#include "platform/digits/DigitAnalysisServiceIfc.h"
#include "platform/framework/Executable.h"

namespace host {

/// Dialling rules from the configuration, registered as "DigitAnalysisServiceIfc". Constant after construction, so any
/// thread may call.
class DigitAnalysis final : public Executable, public DigitAnalysisServiceIfc {
public:
    /// `region` is the country whose numbering plan holds for the line, two capital letters; one that is not known is
    /// logged, and costs national numbers their international form. The codes are as they are dialled ("*61"); empty
    /// ones are passed over.
    DigitAnalysis(const std::string& region, const std::vector<std::string>& featureAccessCodes);

    /// Whether the digits begin with one of the codes: a code is dialled alone or with a number behind it. Blanks and
    /// other marks between digits do not count.
    [[nodiscard]] bool isFeatureAccessCode(const std::string& digits) override;

    /// Brings the spellings of one number together:
    ///  1. Blanks, dashes, dots, slashes, parentheses and invisible characters go away. A text that holds anything else
    ///     than digits, "*", "#" and such marks (an address, a name), or a "+" that does not stand in front, is no
    ///     number and stays as it is.
    ///  2. What begins with a feature access code or holds "*" or "#", and extensions (up to five digits), stay as they
    ///     are dialled.
    ///  3. What the numbering plan understands takes its international form: "030 1234", "0049 30 1234" and
    ///     "+49 (0)30 1234" become "+49301234" in Germany. The rest stays as dialled: a local number without its area
    ///     code is a number of its own.
    void normalise(std::string& number) override;

    /// The rules in a word: two that are equal give every number the same form.
    [[nodiscard]] std::string rules() const;

private:
    [[nodiscard]] bool staysInside(const std::string& dialled) const;

    // Constant after construction.
    const std::string m_region;
    const NumberingPlan m_plan;
    /// Without marks.
    const std::vector<std::string> m_codes;
};

}  // namespace host
