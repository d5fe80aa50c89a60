#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "host/call-files/CallCalendar.h"
#include "host/call-files/CallFileReader.h"
#include "host/call-files/CallWriter.h"
#include "host/history/CallJson.h"
#include "tests/support/Table.h"

namespace {

using host::Call;
using host::CallFormat;
using std::chrono::seconds;
using std::chrono::sys_seconds;
using testing::HasSubstr;

std::vector<host::CallRecord> read(CallFormat format, const std::string& text,
                                   const std::string& columns = {}, const host::CallReading& reading = {}) {
    std::istringstream file(text);
    std::vector<host::CallRecord> records;
    host::readCalls(file, format, columns.empty() ? std::nullopt : std::optional(host::CallColumns(columns)),
                    reading, [&records](const host::CallRecord& each) { records.push_back(each); });
    return records;
}

/// The zone of a file is an hour ahead of UTC.
host::CallReading anHourAhead() {
    host::CallReading reading;
    reading.time.toUtc = [](std::chrono::local_seconds local) {
        return sys_seconds(local.time_since_epoch() - std::chrono::hours(1));
    };
    reading.ownNumber = "2001";
    return reading;
}

std::string textOf(const host::CallRecord& record) {
    if (!record.error.empty()) {
        return record.error;
    }
    const Call& call = record.call;
    return std::string(wordOf(call.list)) + " " + host::utcText(call.start) + " " + call.party.number + "," +
           call.party.name + " " + host::durationText(call.duration) + (call.viewed ? "" : " unviewed");
}

host::Party anyParty() {
    const auto text = [] {
        return *rc::gen::container<std::string>(
            rc::gen::element<char>('a', ' ', '"', '\'', ',', ';', '=', '+', '-', '@', '\n', '\t', '<', '7'));
    };
    return {text(), "n" + text() + "\u00e4"};
}

Call anyCall() {
    const auto time = [] { return sys_seconds(seconds(*rc::gen::inRange(0, 2'000'000'000))); };
    Call call;
    call.id = *rc::gen::inRange(1, 1000);
    call.list = static_cast<ListName>(*rc::gen::inRange(0, 4));
    call.party = anyParty();
    if (*rc::gen::arbitrary<bool>()) {
        call.connected = anyParty();
        call.redirecting = anyParty();
        call.established = time();
        call.ended = time();
        call.calledBackAt = time();
    }
    call.reason =
        static_cast<host::CallReason>(*rc::gen::inRange<std::size_t>(0, host::kCallReasonWords.size()));
    call.start = time();
    call.duration = seconds(call.list == ListName::eMissed ? 0 : *rc::gen::inRange(0, 100'000));
    call.endApproximate = *rc::gen::arbitrary<bool>();
    call.lineKey = anyParty().number;
    call.callId = anyParty().number;
    call.viewed = *rc::gen::arbitrary<bool>();
    return call;
}

TEST(CallFiles, GiveBackEveryCallThatWasWritten) {
    rc::check("as CSV and as JSON lines", [] {
        const auto json = host::callJson(anyCall());
        for (const auto& [format, text] :
             {std::pair{CallFormat::eCsv, host::callCsvHead() + host::callCsvRow(json)},
              {CallFormat::eJsonLines, host::callJsonLine(json)},
              {CallFormat::eJson, R"({"total":1,"calls":[)" + host::callJsonLine(json) + "]}"}}) {
            const auto records = read(format, text);
            RC_ASSERT(records.size() == 1U);
            RC_ASSERT(records[0].error.empty());
            RC_ASSERT(host::callJson(records[0].call) == json);
        }
    });
}

// Rows: the cells of start, calling, called, billed seconds, caller and outcome; the call or the error.
TEST(CallFiles, ReadTheCallDetailRecordsOfAnyTelephoneSystem) {
    const std::string columns =
        "start=calldate,calling=src,called=dst,duration=billsec,name=clid,list=disposition";
    for (const auto& row : journaltest::table(2, R"(
        2026-11-21 06:22:05;4711;2001;75;"Ada" <4711>;ANSWERED         | received 2026-11-21T05:22:05Z 4711,Ada 1:15
        2026-11-21T06:22:05Z;4711;2001;20;Ada;NO ANSWER                | missed 2026-11-21T06:22:05Z 4711,Ada 0:00 unviewed
        2026-11-21T06:22:05.7+02:00;2001;4711;1:00:01;Me;ANSWERED      | dialled 2026-11-21T04:22:05Z 4711, 1:00:01
        21.11.2026 06:22;4711;2001;0;"4711" <4711>;no_answer           | missed 2026-11-21T05:22:00Z 4711, 0:00 unviewed
        1795238525;20-01;4711;9;;BUSY                                  | dialled 2026-11-21T05:22:05Z 4711, 0:00
        1795238525123;4711;2001;12.9;;                                 | received 2026-11-21T05:22:05Z 4711, 0:12
        2026/11/21 00:30;;2001;;;                                      | missed 2026-11-20T23:30:00Z , 0:00 unviewed
        2026-11-21 06:22:05;4711;2001;5;;forwarded                     | forwarded 2026-11-21T05:22:05Z 4711, 0:05
        2026-02-30 06:22:05;4711;2001;5;;                              | start is no time: 2026-02-30 06:22:05
        11/12/2026 06:22;4711;2001;5;;                                 | start is no time: 11/12/2026 06:22
        2026-11-21 06:22;4711;2001;5 s;;                               | duration is neither seconds nor h:mm:ss: 5 s
        2026-11-21 06:22;4711;2001;5;;CONGESTED?                       | list is unknown: CONGESTED?
    )")) {
        const auto records = read(CallFormat::eCsv, "calldate;src;dst;billsec;clid;disposition\n" + row[0],
                                  columns, anHourAhead());
        ASSERT_EQ(records.size(), 1U) << row[0];
        EXPECT_EQ(textOf(records[0]), row[1]) << row[0];
    }
}

TEST(CallFiles, NameTheRowsThatCannotBeReadAndReadTheOthers) {
    auto reading = anHourAhead();
    reading.time.format = "%m/%d/%Y %I:%M %p";
    const auto numbered = read(CallFormat::eCsv, "11/12/2026,6:22 PM,4711\n13/12/2026,6:22 PM,4711\n",
                               "start=1+2,number=3", reading);
    ASSERT_EQ(numbered.size(), 2U);
    EXPECT_EQ(textOf(numbered[0]), "missed 2026-11-12T17:22:00Z 4711, 0:00 unviewed");
    EXPECT_EQ(numbered[1].row, 2U);
    const auto lines =
        read(CallFormat::eJsonLines,
             "{\"start\":\"2026-11-21T05:22:05Z\",\"list\":\"dialled\"}\n\n[1]\n{\"start\":{}}\n"
             "{\"start\":\"2026-11-21 05:22:05\"}\n"
             "{\"start\":\"2026-11-21T05:22:05Z\",\"number\":\"" +
                 std::string(257, '1') + "\"}\n");
    ASSERT_EQ(lines.size(), 5U);
    EXPECT_TRUE(lines[0].error.empty());
    for (std::size_t at = 1; at < 5; ++at) {
        EXPECT_EQ(lines[at].row, at + 2);
        EXPECT_FALSE(lines[at].error.empty());
    }
    const auto list =
        read(CallFormat::eJson, R"({"list":"missed","total":1,"items":[{"entryId":"x","list":"missed",
        "firstName":"Ada","surname":"Miller","number":"1","time":"2026-11-21T05:22:05Z","viewed":true,"occurrences":[
        {"number":"1","time":"2026-11-21T05:22:05Z"},{"number":"2","time":"2026-11-20T05:22:05Z","duration":"01:15"}]}]})");
    ASSERT_EQ(list.size(), 2U);
    EXPECT_EQ(textOf(list[1]), "missed 2026-11-20T05:22:05Z 2,Ada Miller 0:00");
    EXPECT_THROW(read(CallFormat::eJson, R"([{"start":"2026-11-21T05:22:05Z"},)"), host::CallFileError);
    EXPECT_THROW(read(CallFormat::eCsv, "calldate,src\n", "start=date"), host::CallFileError);
    EXPECT_THROW(host::CallColumns("start=calldate,durration=billsec"), host::CallFieldError);
}

TEST(CallCalendar, HasAnEventForEachCallInShortLines) {
    Call call;
    call.id = 7;
    call.party = {"4711", "Ada; \\ Miller,\n" + std::string(30, 'x') + "\u00e4\u00e4\u00e4\u00e4\u00e4"};
    call.start = sys_seconds(seconds(1'795'238'525));
    call.duration = seconds(75);
    const std::string event = host::calendarEvent(host::callJson(call), "2001");
    EXPECT_THAT(event, HasSubstr("UID:call-7@2001\r\n"));
    EXPECT_THAT(event, HasSubstr("DTSTART:20261121T052205Z\r\nDTEND:20261121T052320Z\r\n"));
    EXPECT_THAT(event, HasSubstr("SUMMARY:Missed call from Ada\\; \\\\ Miller\\,\\n"));
    EXPECT_THAT(event, HasSubstr("DESCRIPTION:Number: 4711\\nDuration: 1:15\r\n"));
    std::istringstream lines(event);
    std::string unfolded;
    for (std::string line; std::getline(lines, line);) {
        EXPECT_LE(line.size(), 76U) << line;
        unfolded += line.substr(line.starts_with(' ') ? 1 : 0, line.size() - (line.starts_with(' ') ? 2 : 1));
    }
    EXPECT_THAT(unfolded, HasSubstr("x\u00e4\u00e4\u00e4\u00e4\u00e4DESCRIPTION"));
}

}  // namespace
