#include "src/JournalServiceEvents/calls/CallMap.h"

#include "src/JournalService/base/Log.h"

namespace journal {

Call* CallMap::findCallFromId(const std::string& callId) const {
    const auto found = m_callMap.find(callId);
    const bool known = found != m_callMap.end();
    LOG_EVENTS(6, "findCallFromId: callId[%s] %sfound in mCalls[%d]", callId.c_str(), known ? "" : "NOT ",
               static_cast<int>(m_callMap.size()));
    return known ? found->second.get() : nullptr;
}

Call* CallMap::insertEntryToCallMap(const std::string& callId, std::unique_ptr<Call> call) {
    LOG_EVENTS(6, "insertEntryToCallMap insert[%s][%p] into map size[%d]", callId.c_str(),
               static_cast<const void*>(call.get()), static_cast<int>(m_callMap.size()));
    return m_callMap.try_emplace(callId, std::move(call)).first->second.get();
}

bool CallMap::removeCall(const std::string& callId) {
    LOG_EVENTS(5, "%s():[%s]", "removeCall", callId.c_str());
    const auto found = m_callMap.find(callId);
    if (found == m_callMap.end()) {
        return false;
    }
    // `callId` may belong to the record; it is not read after this.
    m_callMap.erase(found);
    return true;
}

void CallMap::removeAllCalls() {
    LOG_EVENTS(5, "%s():", "removeAllCalls");
    while (!m_callMap.empty()) {
        LOG_EVENTS(5, "%s():Call removed", "removeAllCalls");
        m_callMap.erase(m_callMap.begin());
    }
}

}  // namespace journal
