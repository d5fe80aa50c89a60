#include "host/digits/NumberPatterns.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "host/digits/DialledText.h"
#include "host/digits/DigitAnalysis.h"

namespace host {

NumberPatterns::NumberPatterns(const std::vector<std::string>& patterns,
                               const std::vector<std::string>& dialledBefore, DigitAnalysis& digits)
    : m_digits(digits), m_dialledBefore(dialledCodes(dialledBefore)) {
    for (const std::string& pattern : patterns) {
        if (!pattern.ends_with('*')) {
            m_numbers.push_back(normalised(pattern));
            continue;
        }
        m_begins.push_back(withoutSeparators(pattern.substr(0, pattern.size() - 1)));
        if (std::string begin = internationalBegin(m_begins.back()); !begin.empty()) {
            m_begins.push_back(std::move(begin));
        }
    }
}

std::string NumberPatterns::normalised(std::string number) const {
    m_digits.normalise(number);
    return number;
}

/// The begin of the international form of numbers that begin so; empty if it has no such form. The numbering
/// plan reads whole numbers only, so the begin is completed to one.
std::string NumberPatterns::internationalBegin(const std::string& begin) const {
    constexpr std::size_t kMostDigits = 15;
    for (std::string rest = "2"; begin.size() + rest.size() <= kMostDigits; rest += '2') {
        const std::string number = normalised(begin + rest);
        if (number.starts_with('+') && number.ends_with(rest) && number.size() > rest.size() + 1) {
            return number.substr(0, number.size() - rest.size());
        }
    }
    return {};
}

bool NumberPatterns::matches(const std::string& number) const {
    const std::string dialled = withoutSeparators(number);
    return matchesItself(dialled) ||
           std::any_of(m_dialledBefore.begin(), m_dialledBefore.end(), [&](const std::string& before) {
               return dialled.starts_with(before) && matchesItself(dialled.substr(before.size()));
           });
}

bool NumberPatterns::matchesItself(const std::string& dialled) const {
    const std::string form = normalised(dialled);
    return std::find(m_numbers.begin(), m_numbers.end(), form) != m_numbers.end() ||
           std::any_of(m_begins.begin(), m_begins.end(), [&](const std::string& begin) {
               return dialled.starts_with(begin) || form.starts_with(begin);
           });
}

}  // namespace host
