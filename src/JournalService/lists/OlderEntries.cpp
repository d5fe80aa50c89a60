#include "src/JournalService/lists/OlderEntries.h"

namespace journal {

void OlderEntries::loaded(bool areLeft) {
    const auto forget = [areLeft](auto&... lefts) { ((lefts.known = !areLeft, lefts.items.clear()), ...); };
    std::apply(forget, m_left);
}

}  // namespace journal
