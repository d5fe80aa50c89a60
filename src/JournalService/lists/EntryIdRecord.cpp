#include "src/JournalService/lists/EntryIdRecord.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>

namespace journal {
namespace {

std::uint32_t numberIn(const std::string& entryId, std::size_t at) {
    return static_cast<std::uint32_t>(std::strtoul(entryId.c_str() + at, nullptr, 16));
}

}  // namespace

std::string EntryIdRecord::timeOf(const std::string& entryId) {
    return entryId.substr(0, std::max(entryId.size(), kDigits) - kDigits);
}

bool EntryIdRecord::knows(const std::string& time) {
    if (!m_isComplete) {
        return false;
    }
    if (time > m_newest) {
        begin(time);
        end(true);
    }
    return m_isCurrent && time == m_time;
}

void EntryIdRecord::begin(const std::string& time) {
    m_time = time;
    m_used.clear();
    m_runLength = 0;
    m_freeInRun.clear();
}

void EntryIdRecord::add(const std::string& entryId) {
    m_newest = std::max(m_newest, entryId);
    if (entryId.starts_with(m_time)) {
        ++m_used[entryId];
    }
}

void EntryIdRecord::end(bool complete) {
    m_isComplete = complete;
    m_isCurrent = complete;
}

std::string EntryIdRecord::take(const std::string& entryId) {
    std::string taken = entryId;
    if (m_used.contains(entryId)) {
        taken = idOf(nextFree(numberIn(entryId, m_time.size()) + 1));
    }
    if (std::uint32_t number = 0; isInRun(taken, number)) {
        m_freeInRun.erase(number);
    }
    add(taken);
    return taken;
}

void EntryIdRecord::release(const std::string& entryId) {
    const auto found = m_used.find(entryId);
    if (found == m_used.end() || --found->second > 0) {
        return;
    }
    m_used.erase(found);
    if (std::uint32_t number = 0; isInRun(entryId, number)) {
        m_freeInRun.insert(number);
    }
}

std::string EntryIdRecord::idOf(std::uint32_t number) const {
    std::array<char, kDigits + 1> digits{};
    std::snprintf(digits.data(), digits.size(), "%.8X", number);
    return m_time + digits.data();
}

bool EntryIdRecord::isInRun(const std::string& entryId, std::uint32_t& number) const {
    if (m_runLength == 0 || entryId.size() != m_time.size() + kDigits) {
        return false;
    }
    number = numberIn(entryId, m_time.size());
    // The numbers may begin at zero again.
    return number - m_runFirst < m_runLength && entryId == idOf(number);
}

std::uint32_t EntryIdRecord::nextFree(std::uint32_t first) {
    if (first != m_runFirst) {
        m_runFirst = first;
        m_runLength = 0;
        m_freeInRun.clear();
    }
    if (!m_freeInRun.empty()) {
        const auto afterFirst = m_freeInRun.lower_bound(first);
        return afterFirst == m_freeInRun.end() ? *m_freeInRun.begin() : *afterFirst;
    }
    while (m_used.contains(idOf(m_runFirst + m_runLength))) {
        ++m_runLength;
    }
    return m_runFirst + m_runLength;
}

}  // namespace journal
