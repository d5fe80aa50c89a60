#include "host/switch/scenario/ScenarioParser.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <regex>
#include <string>
#include <vector>

#include "host/switch/scenario/ScenarioError.h"
#include "tests/support/Table.h"

namespace {

using host::loadScenario;
using host::parseScenario;
using host::Scenario;
using host::ScenarioError;
using host::SwitchParty;
using testing::HasSubstr;

TEST(Scenario, ReadsStatementsAndUnrollsBlocks) {
    const Scenario scenario = parseScenario(
        "# a comment\n"
        "device 2005;;\n"
        "call c1 from 4711 \"Ann; M\xC3\xBCller # 1\" to 2005 ; ring c1;wait 2s   # rings\r\n"
        "\n"
        "repeat 2; wait 1ms; repeat 3; wait 500ms; end; end\n"
        "answer c1 ; hangup c1 by caller");
    ASSERT_EQ(scenario.steps.size(), 3U + 2 * (1 + 3) + 2);
    EXPECT_EQ(scenario.device, "2005");
    EXPECT_EQ(scenario.callCount, 1U);
    EXPECT_EQ(scenario.waitTime, std::chrono::milliseconds(5002));
    EXPECT_EQ(scenario.steps[0].from, (SwitchParty{"4711", "Ann; M\xC3\xBCller # 1", false}));
    EXPECT_EQ(scenario.steps[0].line, 3U);
    EXPECT_EQ(scenario.steps[12].party, "caller");
    EXPECT_EQ(scenario.steps[12].line, 6U);
    EXPECT_TRUE(parseScenario("\n # nothing\n;;\n").steps.empty());
}

/// Where and what is wrong with a scenario.
std::string faultOf(const std::string& text) {
    try {
        static_cast<void>(parseScenario(text, "day"));
        return "no fault";
    } catch (const ScenarioError& error) {
        return error.what();
    }
}

// "/" is a line break. A fault in another line than the first begins with the line number. "talk" is a
// connected call c; "two" is a held call c and a connected call d; "all" is a conference of these two.
constexpr const char* kFaults = R"(
wait 1s / rang c1                          | 2: "rang" is no action
ring c                                     | the call c was never made
call c from 1 ; answer c                   | the call c does not ring
call c from 1 / ring c / ring c            | 3: "ring": the call c cannot ring now
call c from 1 / call c from 2              | 2: "call": the call c is still there
call c from 1; ring c; hold c              | is not connected
call c from 1; ring c; busy c              | was not just dialled
call c                                     | expected "from"
call c from 1 "Ann                         | a quotation mark has no partner
call c from 1 to 2 please                  | "please" does not belong here
call c from 1; ring c; divert c to 2 reason boredom | "boredom" is no reason
call c from 1; ring c; hangup c by me      | neither "caller" nor "called"
wait 1e99s                                 | is no time
/ repeat 2 / wait 1s                       | 2: "repeat" without "end"
wait 1s / end                              | 2: "end" without "repeat"
repeat 0; wait 1s; end                     | "0" is no number of times
repeat 2; end                              | has nothing to repeat
repeat 2 call c from 1; end                | the block begins with the next statement
repeat 4000000000; wait 1ms; end           | more than 200000 steps
wait 1s; device 2001                       | stands once, before everything else
device 2001 "Desk"                         | nothing may follow
call c from 1; ring c; pickup c by 1       | 1 is in the call c already
talk; hold c; transfer c to c              | the call c neither rings nor is connected
talk; hold c by called; dial d to 2; connect d; join c d | "join": 1, who holds the call c, is not in the call d
talk; consult d from c to 2; ring d; join c d | the call d is not connected
two; transfer c to d; hangup d             | d is over
all; leave c by 3                          | 3 is not in the conference c
all; hangup c by caller                    | a conference has members, no caller
callback anonymous                         | an anonymous party cannot be called back
callback 1; callback 1 cancel; callback 1 cancel | no callback to 1 is set
call c from 1; name c Ann                  | expected the name in quotation marks
log clear everything                       | "everything" is no log (dialled, group, missed, received)
wait 1s; line 2050                         | stands before the first action
device 2001; line 2001                     | the phone serves 2001 already
)";

TEST(Scenario, ReportsTheLineAndTheFault) {
    for (const std::vector<std::string>& row : journaltest::table(2, kFaults)) {
        std::string text = std::regex_replace(row[0], std::regex("/"), "\n");
        text = std::regex_replace(text, std::regex("^all;"), "two; join c d;");
        text = std::regex_replace(text, std::regex("^two;"), "talk; consult d from c to 2; connect d;");
        text = std::regex_replace(text, std::regex("^talk;"), "dial c to 1; connect c;");
        const bool isNumbered = row[1].size() > 1 && row[1][1] == ':';
        EXPECT_EQ(faultOf(text).substr(0, 5), isNumbered ? "day:" + row[1].substr(0, 1) : "day:1") << text;
        EXPECT_THAT(faultOf(text), HasSubstr(row[1])) << text;
    }
    EXPECT_THROW(static_cast<void>(loadScenario("no-such-file.scenario")), ScenarioError);
}

}  // namespace
