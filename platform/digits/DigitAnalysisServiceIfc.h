#pragma once

#include <string>

/// The dialling rules of the line. Registered as "DigitAnalysisServiceIfc". Any thread may call, at any time.
class DigitAnalysisServiceIfc {
public:
    DigitAnalysisServiceIfc() = default;
    DigitAnalysisServiceIfc(const DigitAnalysisServiceIfc&) = delete;
    DigitAnalysisServiceIfc& operator=(const DigitAnalysisServiceIfc&) = delete;
    virtual ~DigitAnalysisServiceIfc() = default;

    /// Whether the dialled digits are a feature access code rather than a number.
    [[nodiscard]] virtual bool isFeatureAccessCode(const std::string& digits) = 0;
    /// Rewrites `number` in place in the form in which two spellings of one number are equal.
    virtual void normalise(std::string& number) = 0;
};
