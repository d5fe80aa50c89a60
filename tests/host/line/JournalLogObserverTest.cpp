#include "host/line/JournalLogObserver.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/CapturedLog.h"

namespace host {
namespace {

using journaltest::CapturedLog;
using ::testing::ElementsAre;

MissedCallItem missedFromAnn() {
    MissedCallItem item;
    item.setFirstname("Ann");
    item.setSurname("Müller");
    MissedCallItem::MissedCallInfo info;
    info.setNumber("4711");
    item.addCallInfoToList(info);
    return item;
}

TEST(JournalLogObserver, LogsEachChangeAndNotifiesItsListenerEvenIfTheLogIsOff) {
    JournalLogObserver observer("2001");
    std::vector<std::string> heard;
    observer.setListener([&heard](const std::string& sentence) { heard.push_back(sentence); });
    // The contents that a new subscriber gets are no changes.
    observer.missedCallsUpdate(missedFromAnn(), "", JournalServiceObserverIfc::eItemAdded);
    observer.setSubscribed();
    observer.missedCallsCountUpdate(1);
    observer.missedCallsUpdate(missedFromAnn(), "", JournalServiceObserverIfc::eItemAdded);
    observer.dialledCallsUpdate({}, "", JournalServiceObserverIfc::eListCleared);
    observer.receivedCallsUpdate({}, "7", JournalServiceObserverIfc::eItemDeleted);
    observer.forwardedCallsUpdate({}, "", JournalServiceObserverIfc::eListChanged);
    observer.callBacksUpdate({}, "", JournalServiceObserverIfc::eItemDeleted);
    observer.callBacksCountUpdate(0);
    EXPECT_THAT(CapturedLog::lines("Journal"),
                ElementsAre("2001: missed call from Ann Müller (4711)",
                            "2001: the dialled calls were cleared", "2001: a received call was deleted",
                            "2001: the forwarded calls changed", "2001: a callback was deleted"));
    EXPECT_EQ(heard.front(), "missed call from Ann Müller (4711)");
    CapturedLog::switchOff();
    observer.forwardedCallsUpdate({}, "", JournalServiceObserverIfc::eListChanged);
    EXPECT_EQ(heard.size(), 6U);
}

}  // namespace
}  // namespace host
