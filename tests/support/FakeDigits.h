#pragma once

#include <map>
#include <mutex>
#include <set>
#include <string>

#include "platform/digits/DigitAnalysisServiceIfc.h"
#include "platform/framework/Executable.h"

namespace journaltest {

/// Dialling rules that know only what a test tells them; register it as "DigitAnalysisServiceIfc". Any thread may
/// call.
class FakeDigits final : public Executable, public DigitAnalysisServiceIfc {
public:
    void addFeatureAccessCode(const std::string& digits) {
        const std::lock_guard lock(m_mutex);
        m_codes.insert(digits);
    }
    /// `spelling` is a way to write `number`. Numbers without a rule stay as they are.
    void addSpelling(const std::string& spelling, const std::string& number) {
        const std::lock_guard lock(m_mutex);
        m_numbers[spelling] = number;
    }

    [[nodiscard]] bool isFeatureAccessCode(const std::string& digits) override {
        const std::lock_guard lock(m_mutex);
        return m_codes.contains(digits);
    }
    void normalise(std::string& number) override {
        const std::lock_guard lock(m_mutex);
        const auto found = m_numbers.find(number);
        if (found != m_numbers.end()) {
            number = found->second;
        }
    }

private:
    // Guarded by m_mutex.
    std::mutex m_mutex;
    std::set<std::string> m_codes;
    std::map<std::string, std::string> m_numbers;
};

}  // namespace journaltest
