#pragma once

#include <list>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "include/ObserverNotifier.h"
#include "platform/texts/SoftwareTypes.h"
#include "tests/support/FakeJournalService.h"
#include "tests/support/RecordingObserver.h"

namespace journaltest {

template <typename Item>
Item itemWithId(const std::string& entryId) {
    Item item;
    item.setEntryId(entryId);
    return item;
}

inline MissedCallItem missed(const std::string& entryId, bool viewed) {
    auto item = itemWithId<MissedCallItem>(entryId);
    item.setViewed(viewed);
    return item;
}

/// A dialled item with an occurrence a number, the first number in front.
inline DialledCallItem dialled(const std::string& entryId, const std::vector<std::string>& numbers) {
    auto item = itemWithId<DialledCallItem>(entryId);
    std::list<DialledCallItem::DialledCallInfo> occurrences;
    for (const std::string& number : numbers) {
        occurrences.emplace_back().setNumber(number);
    }
    item.setDialledCallInfoList(occurrences);
    return item;
}

/// A notifier in front of a journal whose lists a test fills in.
class Notifier : public testing::Test {
protected:
    FakeJournalService journal;
    ObserverNotifier notifier;

    void startAs(const std::string& softwareType) { notifier.init(&journal, softwareType); }

    /// Subscribes and forgets what the observer was told by that.
    void subscribeQuietly(RecordingObserver& observer) {
        ASSERT_TRUE(notifier.subscribe(&observer, {}));
        observer.clear();
    }
};

}  // namespace journaltest
