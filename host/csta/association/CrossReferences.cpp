#include "host/csta/association/CrossReferences.h"

#include <algorithm>
#include <iterator>

namespace host {

std::vector<WireDocument> CrossReferences::claim(LinkedLine& line, ReferenceKind kind, const std::string& id,
                                                 Clock::time_point now) {
    const Key key{kind, id};
    const auto [begin, end] = m_lines.equal_range(key);
    if (std::any_of(begin, end, [&line](const auto& each) { return each.second == &line; })) {
        return {};
    }
    m_lines.emplace(key, &line);
    return m_early.take(kind, id, now);
}

void CrossReferences::drop(const LinkedLine& line, ReferenceKind kind, const std::string& id) {
    const auto [begin, end] = m_lines.equal_range(Key{kind, id});
    const auto found = std::find_if(begin, end, [&line](const auto& each) { return each.second == &line; });
    if (found != end) {
        m_lines.erase(found);
    }
}

void CrossReferences::dropAll(const LinkedLine& line) {
    std::erase_if(m_lines, [&line](const auto& each) { return each.second == &line; });
}

void CrossReferences::clear() {
    m_lines.clear();
    m_early.clear();
}

std::vector<LinkedLine*> CrossReferences::linesOf(ReferenceKind kind, const std::string& id) const {
    const auto [begin, end] = m_lines.equal_range(Key{kind, id});
    std::vector<LinkedLine*> lines;
    std::transform(begin, end, std::back_inserter(lines), [](const auto& each) { return each.second; });
    return lines;
}

}  // namespace host
