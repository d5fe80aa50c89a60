#include "host/csta-wire/InvokeIds.h"

namespace host {

std::optional<int> InvokeIds::next(const std::function<bool(int)>& isWaiting) {
    for (int tried = kFirst; tried <= kLast; ++tried) {
        const int id = m_next;
        m_next = id == kLast ? kFirst : id + 1;
        if (!isWaiting(id)) {
            return id;
        }
    }
    return std::nullopt;
}

}  // namespace host
