// The service variant that loads with two read requests at each subscription.

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cctype>
#include <thread>

#include "platform/journal-library/DataResponse.h"
#include "tests/support/CapturedLog.h"
#include "tests/support/RecordingObserver.h"
#include "tests/support/SimulatedPhone.h"
#include "tests/support/Table.h"

namespace journaltest {
namespace {

using Texts = std::vector<std::string>;
constexpr const char* kMissedTable = CallListDatabaseAdapterHelper::DAS_CALLLOGMISSEDCALLS;

/// Minute by minute; the later the minute, the higher the number.
MissedCallItem missedAt(int minute) {
    MissedCallItem::MissedCallInfo info;
    info.setNumber(std::to_string(1000 + minute));
    info.setTimeAndDate("2026-11-20T" + std::to_string(10 + minute / 60) + ":" +
                        std::to_string(10 + minute % 60) + ":00Z");
    MissedCallItem item;
    item.setEntryId(info.getTimeAndDate() + "00000001");
    item.setMissedCallInfoList({info});
    return item;
}

template <typename Items>
Texts numbersOf(const Items& items) {
    Texts numbers;
    for (const MissedCallItem& item : items) {
        numbers.push_back(item.getMissedCallInfoList().front().getNumber());
    }
    return numbers;
}

class ReadRequestLoading : public testing::Test {
protected:
    void addRows(int from, int to) {
        for (int minute = from; minute < to; ++minute) {
            phone.database.addRow(kMissedTable, missedAt(minute));
        }
    }
    void subscribes() { ASSERT_TRUE(phone.service().subscribeForJournalEvents(&observer)); }
    /// The row limits of the two schemas' read requests since the last question, "200 50".
    std::string reads() {
        std::string limits;
        for (const auto& request : phone.database.requests()) {
            if (request.schema == "Conversations" || request.schema == "CallLogPhoneBook") {
                limits += (limits.empty() ? "" : " ") + std::to_string(request.rowLimit);
            }
        }
        phone.database.forgetRequests();
        return limits;
    }
    [[nodiscard]] std::vector<MissedCallItem> rows() const {
        return phone.database.rows<MissedCallItem>(kMissedTable);
    }

    SimulatedPhone phone;
    RecordingObserver observer;
};

// The rows that there are, the limits of the reads, and the log's total: the rows of the first response count
// again after the second.
TEST_F(ReadRequestLoading, AsksForWhatIsLeftOfTwoHundredRows) {
    int before = 0;
    phone.starts();
    for (const auto& row : table(3, R"(
0   | 200 200 | 0
150 | 200 50  | 300
199 | 200 1   | 398
200 | 200     | 200
250 | 200     | 200
)")) {
        const int rowsNow = std::stoi(row[0]);
        addRows(std::exchange(before, rowsNow), rowsNow);
        phone.database.forgetRequests();
        CapturedLog::reset();
        subscribes();
        EXPECT_EQ(phone.database.documents().front(),
                  R"(<?xml version="1.0" encoding="utf-8"?><Schema name="Conversations"><ReasonForMessage>)"
                  "read_request</ReasonForMessage><ResultCols>CALL_LOG.* PHONE_BOOK.*</ResultCols><Offset>0"
                  "</Offset><RowLimit>200</RowLimit></Schema>");
        EXPECT_EQ(reads(), row[1]);
        EXPECT_EQ(CapturedLog::count("Found " + row[2] + " call(s) in total\n"), 1);
        EXPECT_EQ(phone.missed().size(), static_cast<std::size_t>(std::min(rowsNow, 200)));
    }
    EXPECT_EQ(phone.service().buildXmlElement("a<b", "a<b&c"), "<a<b>a&lt;b&amp;c</a<b>");
}

// The two responses, of which a number is an entry of that minute; the list afterwards, and the limits of the
// reads.
TEST_F(ReadRequestLoading, AFailureKeepsTheListAndTheOtherResponseIsAdded) {
    const auto response = [](const std::string& cell) {
        journalxml::ListDocument document("Conversations");
        const bool entry = std::isdigit(static_cast<unsigned char>(cell.front())) != 0;
        EXPECT_TRUE(!entry || document.add(missedAt(std::stoi(cell))));
        return entry || cell == "empty" ? document.text() : cell;
    };
    phone.starts();
    for (const auto& row : table(4, R"(
1                | failed  | 1001      | 200 199
failed           | 2       | 1002 1001 | 200 200
<a>a failure</a> | failure | 1002 1001 | 200 200
3                | 4       | 1004 1003 | 200 199
empty            | failed  |           | 200 200
)")) {
        phone.database.setResponse([&](const std::string& document) {
            return response(row[document.find("\"Conversations\"") != std::string::npos ? 0 : 1]);
        });
        subscribes();
        EXPECT_EQ(numbersOf(phone.missed()), split(row[2], ' ')) << row[0];
        EXPECT_EQ(reads(), row[3]);
    }
}

TEST_F(ReadRequestLoading, LoadsAtEverySubscriptionButForCallsOnlyOnce) {
    phone.database.contacts.emplace_back();
    phone.starts();
    phone.plays("misses 1 4711");
    phone.plays("misses 2 4712");
    EXPECT_EQ(reads(), "200 200");
    subscribes();
    subscribes();
    EXPECT_EQ(reads(), "200 198 200 198");
    std::vector<Contact> contacts;
    phone.service().getContactList(contacts);
    EXPECT_EQ(contacts.size(), 1U);
}

TEST_F(ReadRequestLoading, ACallFromTheOldestEntrysPartyIsMergedIntoItUnlessItWasDeleted) {
    addRows(0, 250);
    phone.starts();
    subscribes();
    phone.plays("misses 1 1007");
    EXPECT_EQ(phone.missed().size(), 201U);
    EXPECT_EQ(phone.missed().front().getMissedCallInfoList().size(), 2U);
    EXPECT_EQ(rows().size(), 250U);
    phone.service().updateMissedCall(rows().front());
    EXPECT_EQ(rows().size(), 250U);
    EXPECT_EQ(phone.missed().size(), 202U);

    // Older entries take the place of the deleted ones.
    for (const MissedCallItem& item : phone.missed()) {
        phone.service().deleteMissedCall(item.getEntryId(), false);
    }
    subscribes();
    EXPECT_EQ(phone.missed().size(), 48U);
    EXPECT_EQ(numbersOf(phone.missed()).front(), "1049");

    addRows(250, 450);
    subscribes();
    phone.plays("misses 2 1008");  // which makes the older entries known
    phone.service().deleteMissedCallList();
    phone.plays("misses 3 1009");
    EXPECT_EQ(phone.missed().front().getMissedCallInfoList().size(), 1U);
    EXPECT_EQ(numbersOf(rows()), Texts{"1009"});
}

TEST_F(ReadRequestLoading, WhatTheDatabaseRefusedIsNotLostByALoad) {
    addRows(0, 1);
    phone.starts();
    subscribes();
    phone.database.setFailing(true, "write_request");
    phone.plays("misses 1 1000");
    phone.clock.advance(60);
    phone.plays("misses 2 4712");
    phone.database.forgetRequests();
    subscribes();
    EXPECT_EQ(numbersOf(phone.missed()), (Texts{"4712", "1000"})) << "still refused, so nothing is loaded";
    EXPECT_EQ(phone.database.documents().size(), 1U) << "each refusal may take seconds";

    phone.database.setFailing(false);
    subscribes();
    EXPECT_EQ(numbersOf(phone.missed()), (Texts{"4712", "1000"}));
    EXPECT_EQ(rows().size(), 2U);
    EXPECT_EQ(rows().front().getMissedCallInfoList().size(), 2U);
}

TEST_F(ReadRequestLoading, WhatTheDatabaseRefusedToDeleteDoesNotComeBackNorTakeWhatCameAfterIt) {
    addRows(0, 3);
    phone.starts();
    subscribes();
    for (const Texts& left : {Texts{"4711", "1002", "1001"}, Texts{"4712"}}) {
        phone.database.setFailing(true);
        EXPECT_TRUE(left.size() == 1
                        ? phone.service().deleteMissedCallList()
                        : phone.service().deleteMissedCall(phone.missed().back().getEntryId(), false));
        phone.database.setFailing(false);
        phone.clock.advance(60);
        phone.plays("misses 9 " + left.front());
        subscribes();
        EXPECT_EQ(numbersOf(phone.missed()), left);
        EXPECT_EQ(rows().size(), left.size());
    }
    // A clearing that is refused for good is given up for the sake of what comes after it.
    phone.database.setFailing(true, "delete_request");
    EXPECT_TRUE(phone.service().deleteMissedCallList());
    phone.clock.advance(60);
    phone.plays("misses 4713 4713");
    subscribes();
    EXPECT_EQ(numbersOf(phone.missed()), (Texts{"4713", "4712"}));
}

TEST_F(ReadRequestLoading, OlderEntriesAreDroppedAndClearedLikeTheRestHereAndAtTheSwitch) {
    addRows(0, 1000);
    phone.management.set("system-identifier", "2");
    phone.starts();
    subscribes();
    phone.plays("logs missed 4711");
    EXPECT_EQ(phone.missed().size(), 201U);
    EXPECT_EQ(rows().size(), 1000U);
    ASSERT_EQ(phone.csta.callLogEntries().size(), 1U);
    EXPECT_EQ(phone.csta.callLogEntries().back().subscriberNumber, "1000");

    std::set<std::string> shown;
    for (const MissedCallItem& item : phone.missed()) {
        shown.insert(item.getEntryId());
    }
    phone.service().deleteMissedCallList(shown);
    EXPECT_EQ(rows().size(), 799U);
    phone.csta.forgetRequests();
    for (int turn = 0; turn < 2; ++turn) {
        phone.service().deleteMissedCallList();
        EXPECT_TRUE(rows().empty());
        ASSERT_EQ(phone.csta.callLogEntries().size(), 1U) << "an empty log is not deleted again";
        EXPECT_EQ(phone.csta.callLogEntries().back().action, CallLogEntryRequest::eDeleteAll);
    }
}

// A load replaces the lists by a response that is older than some changes.
TEST_F(ReadRequestLoading, ALoadNeitherLosesACallNorUndoesADeletionNorShortensAListForReaders) {
    CapturedLog::switchOff();
    FakeDataAccess stored;
    Texts expected;
    for (int minute = 0; minute < 10; ++minute) {
        stored.addRow(kMissedTable, missedAt(minute));
        expected.insert(expected.begin(), std::to_string(1000 + minute));
    }
    phone.database.setResponse([&stored](const std::string& document) {
        std::string response = stored.processRequest(document);
        for (int turn = 0; turn < 100 && document.find("read_request") != std::string::npos; ++turn) {
            std::this_thread::yield();  // time for a change that the response does not contain
        }
        return response;
    });
    phone.starts();
    subscribes();
    std::atomic<bool> filing{true};
    std::thread loads([this, &filing] {
        while (filing) {
            phone.service().refreshCallLists();
        }
    });
    std::size_t shortest = expected.size();
    std::thread reads([this, &filing, &shortest] {
        while (filing) {
            shortest = std::min(shortest, phone.missed().size());
        }
    });
    for (int call = 2000; call < 2190; ++call) {
        phone.clock.advance(1);
        phone.plays("misses 9 " + std::to_string(call));
        if (call % 3 == 0) {
            EXPECT_TRUE(phone.service().deleteMissedCall(phone.missed().front().getEntryId(), false));
        } else {
            expected.insert(expected.begin(), std::to_string(call));
        }
    }
    filing = false;
    loads.join();
    reads.join();
    EXPECT_EQ(shortest, 10U);
    EXPECT_EQ(numbersOf(phone.missed()), expected);
    EXPECT_EQ(stored.rows<MissedCallItem>(kMissedTable).size(), expected.size());
}

}  // namespace
}  // namespace journaltest
