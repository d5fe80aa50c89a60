#pragma once

#include <string>
#include <vector>

#include "platform/digits/DigitAnalysisServiceIfc.h"
#include "platform/framework/Executable.h"

namespace host {

/// Dialling rules from the configuration, registered as "DigitAnalysisServiceIfc". Constant after construction, so any
/// thread may call.
///
/// The rules so far know spelling only, no numbering plan: "030 1234" and "+49 30 1234" stay two numbers. Bringing a
/// national number into its international form is one more step at the end of `normalise`.
class DigitAnalysis final : public Executable, public DigitAnalysisServiceIfc {
public:
    /// The codes as they are dialled ("*61"); empty ones are passed over.
    explicit DigitAnalysis(const std::vector<std::string>& featureAccessCodes);

    /// Whether the digits begin with one of the codes: a code is dialled alone or with a number behind it. Blanks and
    /// other marks between digits do not count.
    [[nodiscard]] bool isFeatureAccessCode(const std::string& digits) override;

    /// Brings the spellings of one number together:
    ///  1. Blanks, dashes, dots, slashes and parentheses go away. So does "(0)" in an international number, where it
    ///     stands for a digit that is dialled inside the country only.
    ///  2. "00" before a country code becomes "+".
    /// A text that holds anything else than digits, "*", "#" and such marks (an address, a name), or a "+" that does
    /// not stand in front, is no number and stays as it is.
    void normalise(std::string& number) override;

private:
    // Constant after construction: without marks.
    std::vector<std::string> m_codes;
};

}  // namespace host
