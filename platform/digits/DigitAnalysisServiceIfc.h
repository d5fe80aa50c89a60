#pragma once

#include <string>

/// The dialling rules of the line. Registered as "DigitAnalysisServiceIfc". Any thread may call, at any time.
class DigitAnalysisServiceIfc {
public:
    DigitAnalysisServiceIfc() = default;
    DigitAnalysisServiceIfc(const DigitAnalysisServiceIfc&) = delete;
    DigitAnalysisServiceIfc& operator=(const DigitAnalysisServiceIfc&) = delete;
    virtual ~DigitAnalysisServiceIfc() = default;

    /// True if the dialled digits are a feature access code, not a number.
    [[nodiscard]] virtual bool isFeatureAccessCode(const std::string& digits) = 0;
    /// Rewrites `number` in place to a form that is equal for all spellings of one number.
    virtual void normalise(std::string& number) = 0;
};
