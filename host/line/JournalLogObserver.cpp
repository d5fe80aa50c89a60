#include "host/line/JournalLogObserver.h"

#include "host/log/PrivateText.h"
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
    if (loggingOnAppUni(kComponent, kInformation)) {
        logAppUni(kComponent, __FILE_NAME__, kInformation, __LINE__, "%s: %s", m_line.c_str(),
                  describeChange(item, action, loggedParties()).c_str());
    }
    if (m_listener) {
        m_listener(describeChange(item, action));
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
