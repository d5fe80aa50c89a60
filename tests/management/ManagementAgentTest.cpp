// The journal as management agent: what `setData` takes, refuses and answers, and what `getData` gives.

#include <functional>
#include <ostream>
#include <string>

#include "platform/management/UlmoTags.h"
#include "platform/texts/SoftwareTypes.h"
#include "tests/management/ManagementRig.h"
#include "tests/support/CapturedLog.h"

namespace journaltest {
namespace {

struct Row {
    const char* name;
    bool enabled, missed, remove;  // the settings before
    KeysAndValues asked;
    bool answer;
    Texts own;       // the settings after
    Texts rejected;  // "key: code text"
    Texts stored;    // in the settings record
};

std::ostream& operator<<(std::ostream& out, const Row& row) {
    return out << row.name;
}

Texts rejectionsOf(const ManageableData& data) {
    Texts texts;
    for (const auto& [key, reason] : data.getRejectReasons()) {
        texts.push_back(key + ": " + std::to_string(reason.code) + " " + reason.text);
    }
    return texts;
}

class SetData : public testing::TestWithParam<Row> {
protected:
    ManagementRig rig;
};

TEST_P(SetData, TakesAndRefusesKeyByKey) {
    const Row& row = GetParam();
    rig.setOwn(row.enabled, row.missed, row.remove);
    auto data = ManagementRig::record(row.asked);
    EXPECT_EQ(rig.setData(data), row.answer);
    EXPECT_EQ(rig.own(), row.own);
    EXPECT_EQ(rejectionsOf(data), row.rejected);
    Texts stored;
    for (const std::string& text : rig.written()) {
        if (text.rfind("set ", 0) == 0) {
            stored.push_back(text.substr(4));
        }
    }
    EXPECT_EQ(stored, row.stored);
}

const Texts kDefaults{"enabled", "missed"};
const Row kRows[] = {
    {"NoKeys", true, true, false, {}, true, kDefaults, {}, {}},
    {"SwitchesTheCallLogOff",
     true,
     true,
     false,
     {{"call-log-enabled", "false"}},
     true,
     {"missed"},
     {},
     {"call-log-enabled=false"}},
    {"TakesZeroAndOneForTheCallLogToo",
     false,
     true,
     false,
     {{"call-log-enabled", "1"}},
     true,
     kDefaults,
     {},
     {"call-log-enabled=1"}},
    {"RefusesTheSameCallLogValue",
     true,
     true,
     false,
     {{"call-log-enabled", "true"}},
     false,
     kDefaults,
     {"call-log-enabled: 10 call-log-enabled value is not changed"},
     {"call-log-enabled=true"}},
    {"RefusesNoBooleanForTheCallLog",
     true,
     true,
     false,
     {{"call-log-enabled", "on"}},
     false,
     kDefaults,
     {},
     {}},
    {"MissedLoggingIsInverted",
     true,
     false,
     false,
     {{"missed-logging", "0"}},
     true,
     kDefaults,
     {},
     {"missed-logging=true"}},
    {"MissedLoggingOneMeansOff",
     true,
     true,
     false,
     {{"missed-logging", "1"}},
     true,
     {"enabled"},
     {},
     {"missed-logging=false"}},
    {"MissedLoggingTrueMeansOffToo",
     true,
     true,
     false,
     {{"missed-logging", "true"}},
     true,
     {"enabled"},
     {},
     {"missed-logging=false"}},
    {"RefusesTheSameMissedLogging",
     true,
     true,
     false,
     {{"missed-logging", "0"}},
     false,
     kDefaults,
     {"missed-logging: 10 missed-logging value is not changed"},
     {"missed-logging=true"}},
    {"RefusesNoBooleanForMissedLogging",
     true,
     true,
     false,
     {{"missed-logging", "2"}},
     false,
     kDefaults,
     {"missed-logging: 4 Data invalid for missed-logging"},
     {}},
    {"DeleteWhenCalledIsNotInverted",
     true,
     true,
     false,
     {{"delete-missed-when-called", "1"}},
     true,
     {"enabled", "missed", "delete"},
     {},
     {"delete-missed-when-called=true"}},
    {"DeleteWhenCalledTrueMeansOff",
     true,
     true,
     true,
     {{"delete-missed-when-called", "true"}},
     true,
     kDefaults,
     {},
     {"delete-missed-when-called=false"}},
    {"RefusesNoBooleanForDeleteWhenCalled",
     true,
     true,
     false,
     {{"delete-missed-when-called", ""}},
     false,
     kDefaults,
     {"delete-missed-when-called: 4 Data invalid for delete-missed-when-called"},
     {}},
    {"RefusesAKeyThatIsNotTheJournals",
     true,
     true,
     false,
     {{"volume", "3"}},
     false,
     kDefaults,
     {"volume: 4 Data invalid (volume) for JournalService"},
     {}},
    {"AnswersForTheLastKeyOnly",
     true,
     true,
     false,
     {{"volume", "3"}, {"missed-logging", "1"}},
     true,
     {"enabled"},
     {"volume: 4 Data invalid (volume) for JournalService"},
     {"missed-logging=false"}},
    {"FailsByTheLastKeyAlone",
     true,
     true,
     false,
     {{"missed-logging", "1"}, {"volume", "3"}},
     false,
     {"enabled"},
     {"volume: 4 Data invalid (volume) for JournalService"},
     {"missed-logging=false"}},
    {"ClearingLeavesTheAnswerAlone",
     true,
     true,
     false,
     {{"volume", "3"}, {"clear-calllog", "true"}},
     false,
     kDefaults,
     {"volume: 4 Data invalid (volume) for JournalService"},
     {}},
};
INSTANTIATE_TEST_SUITE_P(Table, SetData, testing::ValuesIn(kRows), kRowName);

TEST_F(SetData, ChangesNothingThatTheDatabaseDidNotTake) {
    rig.database.setFailing(true);
    auto data = ManagementRig::record({{"missed-logging", "1"}, {"call-log-enabled", "false"}});
    EXPECT_FALSE(rig.setData(data));
    EXPECT_EQ(rig.own(), kDefaults);
    EXPECT_TRUE(data.getRejectReasons().empty());
}

TEST_F(SetData, SaysWhyInTheLog) {
    auto data = ManagementRig::record({{"call-log-enabled", "on"}, {"missed-logging", "x"}, {"volume", "3"}});
    rig.setData(data);
    EXPECT_EQ(CapturedLog::lines("Journal Service Events"),
              (Texts{"JournalService::updateEnabledState -> invalid input",
                     "JournalService::setData -> missed-logging - invalid value\n",
                     "volume is not available from this service."}));
}

/// A missed entry and a callback stand in the journal.
class ClearingTheCallLog : public SetData {
protected:
    ClearingTheCallLog() {
        rig.startWith({itemOf<MissedCallItem>("m1", "11", {{"4711", "t"}})}, {}, {}, {},
                      {callBackOf("c1", "4711", "t")});
        rig.context.addService("UCServiceIfc", &rig.uc);
    }
    [[nodiscard]] Texts leftAfter(const std::string& key, const std::string& value) {
        auto data = ManagementRig::record({{key, value}});
        EXPECT_TRUE(rig.setData(data));
        return rig.entryIds();
    }
};

TEST_F(ClearingTheCallLog, DeletesAllCalls) {
    EXPECT_EQ(leftAfter("clear-calllog", "1"), (Texts{"m1", "c1"})) << "no other value does";
    EXPECT_EQ(leftAfter("clear-calllog", "true"), Texts{"c1"});
}

TEST_F(ClearingTheCallLog, HappensAlsoWhenTheCallLogIsSwitchedOff) {
    EXPECT_EQ(leftAfter("call-log-enabled", "false"), Texts{"c1"});
}

TEST_F(ClearingTheCallLog, IsIgnoredWhileAnotherJournalOwnsTheCallLog) {
    rig.uc.setRunning(true);
    EXPECT_EQ(leftAfter("clear-calllog", "true"), (Texts{"m1", "c1"}));
    rig.uc.setRunning(false);
    rig.settings.change([](journal::SettingValues& values) { values.m_ringCentralSyncCallLog = true; });
    EXPECT_EQ(leftAfter("clear-calllog", "true"), (Texts{"m1", "c1"}));
    EXPECT_EQ(CapturedLog::count("setData() ignore clear-calllog in UC/RingCentral mode"), 2);
}

struct Asked {
    const char* name;
    bool enabled, missed, remove;
    Texts keys;
    bool answer;
    Texts given;  // "key=value" of the keys that have one
};

std::ostream& operator<<(std::ostream& out, const Asked& asked) {
    return out << asked.name;
}

class GetData : public testing::TestWithParam<Asked> {};

TEST_P(GetData, AnswersUntilAKeyIsNotTheJournals) {
    ManagementRig rig;
    rig.setOwn(GetParam().enabled, GetParam().missed, GetParam().remove);
    ManageableData data;
    for (const std::string& key : GetParam().keys) {
        data.setRootId(key, nullptr);
    }
    EXPECT_EQ(rig.getData(data), GetParam().answer);
    Texts given;
    for (const std::string& key : data.getRootIds()) {
        if (const DataNode* node = data.interogate(key)) {
            given.push_back(key + "=" + node->getValue());
        }
    }
    EXPECT_EQ(given, GetParam().given);
}

const Texts kAllKeys{"call-log-enabled", "missed-logging", "delete-missed-when-called", "clear-calllog"};
const Asked kAsked[] = {
    {"EverythingOn",
     true,
     true,
     true,
     kAllKeys,
     true,
     {"call-log-enabled=true", "missed-logging=0", "delete-missed-when-called=1", "clear-calllog=false"}},
    {"EverythingOff",
     false,
     false,
     false,
     kAllKeys,
     true,
     {"call-log-enabled=false", "missed-logging=1", "delete-missed-when-called=0", "clear-calllog=false"}},
    {"Nothing", true, true, false, {}, true, {}},
    {"UnknownFirst", true, true, false, {"volume", "call-log-enabled"}, false, {}},
    {"UnknownInTheMiddle",
     true,
     true,
     false,
     {"missed-logging", "volume", "clear-calllog"},
     false,
     {"missed-logging=0"}},
};
INSTANTIATE_TEST_SUITE_P(Table, GetData, testing::ValuesIn(kAsked), kRowName);

}  // namespace
}  // namespace journaltest
