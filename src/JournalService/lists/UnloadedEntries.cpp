#include "src/JournalService/lists/UnloadedEntries.h"

namespace journal {

void UnloadedEntries::setLoaded(bool mayHaveMore) {
    const auto forget = [mayHaveMore](auto&... remainders) {
        ((remainders.known = !mayHaveMore, remainders.items.clear()), ...);
    };
    std::apply(forget, m_remainders);
}

}  // namespace journal
