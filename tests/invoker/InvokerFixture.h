#pragma once

#include <deque>
#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "include/JournalServiceInvoker.h"
#include "platform/journal-library/ClientAnswer.h"
#include "platform/journal-library/ClientRequest.h"
#include "platform/journal-library/JournalServiceHelper.h"
#include "tests/support/FakeFramework.h"
#include "tests/support/FakeJournalService.h"

namespace journaltest {

/// Every method id that exists.
inline const std::vector<int> kMethodIds = {0,  1,  2,  4,  5,  7,  8,  9,  10, 11, 12, 13, 14, 15, 16, 17,
                                            18, 19, 20, 21, 22, 23, 24, 25, 26, 27, 28, 36, 37, 38, 40, 41};

/// The items of one kind that a client finds in an answer, by their entry ids: "missed m1 m2", or nothing.
template <typename Item>
std::string readBack(const std::string& answer, bool (*parse)(const std::string&, std::deque<Item>&),
                     const std::string& kind) {
    std::deque<Item> items;
    EXPECT_TRUE(parse(answer, items)) << answer;
    std::string text;
    for (const Item& item : items) {
        text += " " + (item.getEntryId().empty() ? "-" : item.getEntryId());
    }
    return text.empty() ? text : kind + text;
}

/// What a client reads out of an answer: "nothing" without a payload, "failure", "true", "false", or the items:
/// "missed m1 m2", "no items".
inline std::string readBack(const RecordingResponse& response) {
    using Helper = JournalServiceHelper;
    if (!response.hasPayload()) {
        return "nothing";
    }
    const std::string answer = response.payload();
    if (journalxml::isFailure(answer)) {
        return "failure";
    }
    if (const std::optional<bool> result = journalxml::parseBoolAnswer(answer)) {
        return *result ? "true" : "false";
    }
    const std::string items =
        readBack<MissedCallItem>(answer, &Helper::parseXMLMissedCallList, "missed") +
        readBack<DialledCallItem>(answer, &Helper::parseXMLDialledCallList, "dialled") +
        readBack<ReceivedCallItem>(answer, &Helper::parseXMLReceivedCallList, "received") +
        readBack<ForwardedCallItem>(answer, &Helper::parseXMLForwardedCallList, "forwarded") +
        readBack<CallBackItem>(answer, &Helper::parseXMLCallBackList, "callback");
    return items.empty() ? "no items" : items;
}

template <typename Item>
Item itemWithId(const std::string& entryId) {
    Item item;
    item.setEntryId(entryId);
    return item;
}

/// An invoker in front of a journal that holds two entries in each list.
class InvokerTest : public testing::Test {
protected:
    FakeJournalService journal;
    FakeFrameworkContext framework;
    JournalServiceInvoker invoker;

    void SetUp() override {
        invoker.initInvoker(&framework);
        journal.lists.missed = {itemWithId<MissedCallItem>("m1"), itemWithId<MissedCallItem>("m2")};
        journal.lists.dialled = {itemWithId<DialledCallItem>("d1"), itemWithId<DialledCallItem>("d2")};
        journal.lists.received = {itemWithId<ReceivedCallItem>("r1"), itemWithId<ReceivedCallItem>("r2")};
        journal.lists.forwarded = {itemWithId<ForwardedCallItem>("f1"), itemWithId<ForwardedCallItem>("f2")};
        journal.lists.callBacks = {itemWithId<CallBackItem>("b1"), itemWithId<CallBackItem>("b2")};
    }

    void handle(const std::string& message, RecordingResponse& response) {
        invoker.handleMessage(&journal, message.data(), static_cast<int>(message.size()), &response);
    }

    /// What the client reads; the response must have ended as a response ends.
    std::string answerTo(const std::string& message) {
        RecordingResponse response;
        handle(message, response);
        EXPECT_EQ(response.completions(), 1);
        EXPECT_FALSE(response.usedAfterCompletion());
        return readBack(response);
    }
};

inline std::string requestOf(int id, const std::vector<std::string>& entryIds = {}) {
    return journalxml::buildRequest(static_cast<journalxml::MethodId>(id), entryIds);
}

}  // namespace journaltest
