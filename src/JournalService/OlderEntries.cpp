#include "src/JournalService/OlderEntries.h"

#include "platform/journal-library/CallListDatabaseAdapter.h"
#include "platform/journal-library/CallListDatabaseAdapterHelper.h"
#include "platform/journal-library/JournalServiceHelper.h"

namespace journal {

void OlderEntries::loaded(bool areLeft) {
    m_areLeft = areLeft;
    m_left = {};
}

bool OlderEntries::read(std::deque<MissedCallItem>& items) const {
    return JournalServiceHelper::parseXMLMissedCallList(
        m_adapter.processRequest(CallListDatabaseAdapterHelper::readMissedCallList()), items);
}

bool OlderEntries::read(std::deque<DialledCallItem>& items) const {
    return JournalServiceHelper::parseXMLDialledCallList(
        m_adapter.processRequest(JournalServiceHelper::readDialledCallList()), items);
}

bool OlderEntries::read(std::deque<ReceivedCallItem>& items) const {
    return JournalServiceHelper::parseXMLReceivedCallList(
        m_adapter.processRequest(JournalServiceHelper::readReceivedCallList()), items);
}

bool OlderEntries::read(std::deque<ForwardedCallItem>& items) const {
    return JournalServiceHelper::parseXMLForwardedCallList(
        m_adapter.processRequest(JournalServiceHelper::readForwardedCallList()), items);
}

}  // namespace journal
