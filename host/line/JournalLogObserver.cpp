#include "host/line/JournalLogObserver.h"

#include "host/presentation/ChangeText.h"
#include "platform/logging/Logging.h"

namespace host {
namespace {

constexpr const char* kComponent = "Journal";
constexpr int kInformation = 4;

}  // namespace

template <typename Item>
void JournalLogObserver::log(const Item& item, ActionType action) const {
    if (!m_subscribed || !(m_listener || loggingOnAppUni(kComponent, kInformation))) {
        return;
    }
    const std::string sentence = describeChange(item, action);
    logAppUni(kComponent, __FILE_NAME__, kInformation, __LINE__, "%s: %s", m_line.c_str(), sentence.c_str());
    if (m_listener) {
        m_listener(sentence);
    }
}

void JournalLogObserver::missedCallsUpdate(MissedCallItem item, std::string /*entryId*/, ActionType action) {
    log(item, action);
}

void JournalLogObserver::dialledCallsUpdate(DialledCallItem item, std::string /*entryId*/,
                                            ActionType action) {
    log(item, action);
}

void JournalLogObserver::receivedCallsUpdate(ReceivedCallItem item, std::string /*entryId*/,
                                             ActionType action) {
    log(item, action);
}

void JournalLogObserver::forwardedCallsUpdate(ForwardedCallItem item, std::string /*entryId*/,
                                              ActionType action) {
    log(item, action);
}

void JournalLogObserver::callBacksUpdate(CallBackItem item, std::string /*entryId*/, ActionType action) {
    log(item, action);
}

}  // namespace host
