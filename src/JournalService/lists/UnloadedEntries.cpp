#include "src/JournalService/lists/UnloadedEntries.h"

namespace journal {

void UnloadedEntries::setLoaded(bool areLeft) {
    const auto forget = [areLeft](auto&... lefts) { ((lefts.known = !areLeft, lefts.items.clear()), ...); };
    std::apply(forget, m_left);
}

}  // namespace journal
