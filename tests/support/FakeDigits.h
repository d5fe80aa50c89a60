#pragma once

#include <map>
#include <set>
#include <string>

#include "platform/digits/DigitAnalysisServiceIfc.h"
#include "platform/framework/Executable.h"

namespace journaltest {

/// Dialling rules that know only what a test has put in before calls may come; register it as
/// "DigitAnalysisServiceIfc".
class FakeDigits final : public Executable, public DigitAnalysisServiceIfc {
public:
    std::set<std::string> featureAccessCodes;
    /// Ways to write a number, and the number. Those without a rule stay as they are.
    std::map<std::string, std::string> spellings;

    [[nodiscard]] bool isFeatureAccessCode(const std::string& digits) override {
        return featureAccessCodes.contains(digits);
    }
    void normalise(std::string& number) override {
        const auto found = spellings.find(number);
        number = found == spellings.end() ? number : found->second;
    }
};

}  // namespace journaltest
