// The journal as management agent: what `setData` takes, refuses and answers, and what `getData` gives.

#include <functional>
#include <ostream>
#include <string>

#include <gtest/gtest.h>

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
    const char* own;       // the settings after
    const char* rejected;  // "key: code text"
    const char* stored;    // in the settings record
};

std::ostream& operator<<(std::ostream& out, const Row& row) {
    return out << row.name;
}

std::string rejectionsOf(const ManageableData& data) {
    Texts texts;
    for (const auto& [key, reason] : data.getRejectReasons()) {
        texts.push_back(key + ": " + std::to_string(reason.code) + " " + reason.text);
    }
    return joined(texts);
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
    const std::string written = rig.written();
    EXPECT_EQ(written.substr(0, written.find("; delete")), row.stored) << "but for the lists that it empties";
}

constexpr const char* kEnabled = "call-log-enabled";
constexpr const char* kLogging = "missed-logging";
constexpr const char* kDelete = "delete-missed-when-called";
constexpr const char* kDefaults = "enabled missed";
constexpr const char* kVolume = "volume: 4 Data invalid (volume) for JournalService";

Row row(const char* name, const KeysAndValues& asked, bool answer, const char* own, const char* rejected = "",
        const char* stored = "") {
    return {name, true, true, false, asked, answer, own, rejected, stored};
}

Row rowFrom(bool enabled, bool missed, bool remove, Row row) {
    row.enabled = enabled;
    row.missed = missed;
    row.remove = remove;
    return row;
}

const Row kRows[] = {
    row("NoKeys", {}, true, kDefaults),
    row("SwitchesTheCallLogOff", {{kEnabled, "false"}}, true, "missed", "", "set call-log-enabled=false"),
    rowFrom(false, true, false,
            row("TakesOneForTrue", {{kEnabled, "1"}}, true, kDefaults, "", "set call-log-enabled=1")),
    row("RefusesTheSameCallLogValue", {{kEnabled, "true"}}, false, kDefaults,
        "call-log-enabled: 10 call-log-enabled value is not changed", "set call-log-enabled=true"),
    row("RefusesNoBooleanForTheCallLog", {{kEnabled, "on"}}, false, kDefaults),
    rowFrom(
        true, false, false,
        row("MissedLoggingIsInverted", {{kLogging, "0"}}, true, kDefaults, "", "set missed-logging=true")),
    row("MissedLoggingOneMeansOff", {{kLogging, "1"}}, true, "enabled", "", "set missed-logging=false"),
    row("MissedLoggingTrueMeansOffToo", {{kLogging, "true"}}, true, "enabled", "",
        "set missed-logging=false"),
    row("RefusesTheSameMissedLogging", {{kLogging, "0"}}, false, kDefaults,
        "missed-logging: 10 missed-logging value is not changed", "set missed-logging=true"),
    row("RefusesNoBooleanForMissedLogging", {{kLogging, "2"}}, false, kDefaults,
        "missed-logging: 4 Data invalid for missed-logging"),
    row("DeletingIsNotInverted", {{kDelete, "1"}}, true, "enabled missed delete", "",
        "set delete-missed-when-called=true"),
    rowFrom(true, true, true,
            row("DeletingTrueMeansOff", {{kDelete, "true"}}, true, kDefaults, "",
                "set delete-missed-when-called=false")),
    row("RefusesNoBooleanForDeleting", {{kDelete, ""}}, false, kDefaults,
        "delete-missed-when-called: 4 Data invalid for delete-missed-when-called"),
    row("RefusesAKeyThatIsNotTheJournals", {{"volume", "3"}}, false, kDefaults, kVolume),
    row("AnswersForTheLastKeyOnly", {{"volume", "3"}, {kLogging, "1"}}, true, "enabled", kVolume,
        "set missed-logging=false"),
    row("FailsByTheLastKeyAlone", {{kLogging, "1"}, {"volume", "3"}}, false, "enabled", kVolume,
        "set missed-logging=false"),
    row("ClearingLeavesTheAnswerAlone", {{"volume", "3"}, {"clear-calllog", "no"}}, false, kDefaults,
        kVolume),
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
    [[nodiscard]] std::string leftAfter(const std::string& key, const std::string& value) {
        auto data = ManagementRig::record({{key, value}});
        EXPECT_TRUE(rig.setData(data));
        return rig.entryIds();
    }
};

TEST_F(ClearingTheCallLog, DeletesAllCalls) {
    EXPECT_EQ(leftAfter("clear-calllog", "1"), "m1 c1") << "no other value does";
    EXPECT_EQ(leftAfter("clear-calllog", "true"), "c1");
}

TEST_F(ClearingTheCallLog, HappensAlsoWhenTheCallLogIsSwitchedOff) {
    EXPECT_EQ(leftAfter("call-log-enabled", "false"), "c1");
}

TEST_F(ClearingTheCallLog, IsIgnoredWhileAnotherJournalOwnsTheCallLog) {
    rig.uc.setRunning(true);
    EXPECT_EQ(leftAfter("clear-calllog", "true"), "m1 c1");
    rig.uc.setRunning(false);
    rig.settings.change([](journal::SettingValues& values) { values.m_ringCentralSyncCallLog = true; });
    EXPECT_EQ(leftAfter("clear-calllog", "true"), "m1 c1");
    EXPECT_EQ(CapturedLog::count("setData() ignore clear-calllog in UC/RingCentral mode"), 2);
}

struct Asked {
    const char* name;
    bool enabled, missed, remove;
    Texts keys;
    bool answer;
    const char* given;  // "key=value" of the keys that have one
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
    EXPECT_EQ(joined(given), GetParam().given);
}

const Texts kAllKeys{"call-log-enabled", "missed-logging", "delete-missed-when-called", "clear-calllog"};
const Asked kAsked[] = {
    {"EverythingOn", true, true, true, kAllKeys, true,
     "call-log-enabled=true; missed-logging=0; delete-missed-when-called=1; clear-calllog=false"},
    {"EverythingOff", false, false, false, kAllKeys, true,
     "call-log-enabled=false; missed-logging=1; delete-missed-when-called=0; clear-calllog=false"},
    {"Nothing", true, true, false, {}, true, ""},
    {"UnknownFirst", true, true, false, {"volume", kEnabled}, false, ""},
    {"UnknownInTheMiddle",
     true,
     true,
     false,
     {kLogging, "volume", "clear-calllog"},
     false,
     "missed-logging=0"},
};
INSTANTIATE_TEST_SUITE_P(Table, GetData, testing::ValuesIn(kAsked), kRowName);

}  // namespace
}  // namespace journaltest
