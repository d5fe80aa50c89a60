#include "host/remote/NotificationFrames.h"

#include <algorithm>

#include "host/remote/RemoteFrame.h"
#include "platform/journal-library/JournalServiceHelper.h"
#include "platform/journal-library/ObserverMessage.h"

namespace host {
namespace {

bool isMissedCount(const std::string& message) {
    constexpr auto kCount = journalxml::ObserverMessage::Event::eMissedCallsCountUpdate;
    if (message.find(journalxml::nameOf(kCount)) == std::string::npos) {
        return false;
    }
    const auto parsed = journalxml::parseObserverMessage(message);
    return parsed && parsed->event == kCount;
}

}  // namespace

NotificationFrames::Frame NotificationFrames::frameOf(const std::string& message) {
    const std::lock_guard lock(m_mutex);
    Made& made = madeOf(message);
    const auto count = made.isCount ? m_unviewed() : std::nullopt;
    if (made.frame == nullptr || count != made.count) {
        made.frame = std::make_shared<const std::string>(RemoteFrame::encode(
            RemoteFrame::Kind::eNotification, 0,
            count ? JournalServiceHelper::obsReqMissedCallsCountUpdate(static_cast<unsigned>(*count))
                  : message));
        made.count = count;
    }
    return made.frame;
}

NotificationFrames::Made& NotificationFrames::madeOf(const std::string& message) {
    const auto found = std::find_if(m_made.begin(), m_made.end(),
                                    [&message](const Made& each) { return each.message == message; });
    if (found != m_made.end()) {
        return *found;
    }
    Made& oldest = m_made.at(m_oldest);
    oldest = {.message = message, .isCount = m_unviewed && isMissedCount(message)};
    m_oldest = (m_oldest + 1) % m_made.size();
    return oldest;
}

}  // namespace host
