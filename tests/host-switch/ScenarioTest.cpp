#include "host/switch/Scenario.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <vector>

namespace {

using host::Party;
using host::Scenario;
using host::ScenarioError;
using host::ScenarioStep;
using Action = ScenarioStep::Action;
using testing::HasSubstr;
using testing::StartsWith;

std::vector<Action> actions(const Scenario& scenario) {
    std::vector<Action> all;
    for (const ScenarioStep& step : scenario.steps()) {
        all.push_back(step.action);
    }
    return all;
}

TEST(Scenario, ReadsStatementsOnLinesAndBetweenSemicolons) {
    const Scenario scenario = Scenario::parse(
        "# a comment\n"
        "device 2005\n"
        "call c1 from 4711 \"Ann; M\xC3\xBCller # 1\" to 2005 ; ring c1;wait 2s   # rings\r\n"
        "\n"
        "answer c1 ; wait 1500ms ; hangup c1 by caller");
    EXPECT_EQ(actions(scenario), (std::vector<Action>{Action::eCall, Action::eRing, Action::eWait,
                                                      Action::eAnswer, Action::eWait, Action::eHangUp}));
    EXPECT_EQ(scenario.device(), "2005");
    EXPECT_EQ(scenario.callCount(), 1U);
    EXPECT_EQ(scenario.waitTime(), std::chrono::milliseconds(3500));
    EXPECT_EQ(scenario.steps()[0].from, (Party{"4711", "Ann; M\xC3\xBCller # 1", false}));
    EXPECT_EQ(scenario.steps()[0].to.number, "2005");
    EXPECT_EQ(scenario.steps()[0].line, 3U);
    EXPECT_EQ(scenario.steps()[5].party, "caller");
    EXPECT_EQ(scenario.steps()[5].line, 5U);
}

TEST(Scenario, ReadsWhoAndWhy) {
    const Scenario scenario = Scenario::parse(
        "call c from anonymous via 4700 \"Hotline\" because busy\n"
        "ring c ; divert c to 205 reason noanswer ; giveup c\n"
        "dial d from 2002 to 4712 \"Bob\"; busy d");
    EXPECT_TRUE(scenario.steps()[0].from.anonymous);
    EXPECT_EQ(scenario.steps()[0].redirectedFrom, (Party{"4700", "Hotline", false}));
    EXPECT_EQ(scenario.steps()[0].word, "callForwardBusy");
    EXPECT_EQ(scenario.steps()[2].word, "callForwardNoAnswer");
    EXPECT_EQ(scenario.steps()[2].to.number, "205");
    EXPECT_EQ(scenario.steps()[4].from.number, "2002");
}

TEST(Scenario, UnrollsRepeatedBlocks) {
    const Scenario scenario = Scenario::parse(
        "repeat 2\n"
        "  call c from 1\n"
        "  repeat 3; wait 1s; end\n"
        "  giveup c\n"
        "end\n"
        "wait 1ms");
    EXPECT_EQ(scenario.steps().size(), 2U * (1 + 3 + 1) + 1);
    EXPECT_EQ(scenario.callCount(), 2U);
    EXPECT_EQ(scenario.waitTime(), std::chrono::milliseconds(6001));
}

struct FaultCase {
    const char* text;
    std::size_t line;
    const char* fault;
};

TEST(Scenario, SaysWhereAndWhatIsWrong) {
    const std::vector<FaultCase> cases = {
        {"wait 1s\nrang c1", 2, "\"rang\" is no action"},
        {"ring c1", 1, "the call c1 was never made"},
        {"call c1 from 1 ; answer c1", 1, "the call c1 does not ring"},
        {"call c1 from 1\nring c1\nring c1", 3, "cannot ring now"},
        {"call c1 from 1; giveup c1\nhangup c1", 2, "the call c1 is over"},
        {"call c1 from 1\ncall c1 from 2", 2, "is still there"},
        {"call c1 from 1; ring c1; hold c1", 1, "is not connected"},
        {"dial c1 to 1; connect c1; retrieve c1", 1, "is not held"},
        {"call c1 from 1; ring c1; busy c1", 1, "was not just dialled"},
        {"call c1 from 1; ring c1; divert c1 to 2 reason pickup; answer c1", 1, "does not ring"},
        {"call c1", 1, "expected \"from\""},
        {"call c1 2001 from 1", 1, "expected \"from\" before \"2001\""},
        {"dial c1", 1, "expected \"to\""},
        {"call \"c1\" from 1", 1, "expected the name of a call"},
        {"call c1 from \"Ann\"", 1, "expected a number"},
        {"call c1 from 1 \"Ann", 1, "a quotation mark has no partner"},
        {"call c1 from 1 to 2 please", 1, "\"please\" does not belong here"},
        {"call c1 from 1; ring c1; divert c1 to 2 reason boredom", 1, "\"boredom\" is no reason"},
        {"call c1 from 1; ring c1; hangup c1 by me", 1, "neither \"caller\" nor \"called\""},
        {"wait", 1, "expected a time"},
        {"wait 5", 1, "\"5\" is no time"},
        {"wait -1s", 1, "is no time"},
        {"wait nan", 1, "is no time"},
        {"wait 1e99s", 1, "is no time"},
        {"wait 2days", 1, "is no time"},
        {"\nrepeat 2\nwait 1s", 2, "\"repeat\" without \"end\""},
        {"wait 1s\nend", 2, "\"end\" without \"repeat\""},
        {"repeat 0; wait 1s; end", 1, "\"0\" is no number of times"},
        {"repeat many; wait 1s; end", 1, "is no number of times"},
        {"repeat 2; end", 1, "has nothing to repeat"},
        {"repeat 2 call c from 1; end", 1, "the block begins with the next statement"},
        {"repeat 2; call c from 1; end", 1, "is still there"},
        {"repeat 4000000000; wait 1ms; end", 1, "more than 200000 steps"},
        {"wait 1s; device 2001", 1, "stands once, before everything else"},
        {"device 2001 \"Desk\"", 1, "nothing may follow"},
        {"status", 1, "expected a status"},
        {"call c from 1; ring c; pickup c by 1", 1, "1 is in the call c already"},
        {"device 2005; call c from 1; ring c; pickup c", 1, "2005 is in the call c already"},
        {"call c from 1; ring c; consult d from c to 2", 1, "\"consult\": the call c is not connected"},
        {"call c from 1; ring c; transfer c to 2", 1, "\"transfer\": the call c is not connected"},
        {"dial c to 1; connect c; hold c; transfer c to d", 1, "the call d was never made"},
        {"dial c to 1; connect c; hold c; transfer c to c", 1, "the call c neither rings nor is connected"},
        {"dial c to 1; connect c; dial d to 2; connect d; transfer c to d", 1, "the call c is not held"},
        {"dial c to 1; connect c; hold c by called; dial d to 2; connect d; join c d", 1,
         "\"join\": 1, who holds the call c, is not in the call d"},
        {"dial c to 1; connect c; consult d from c to 2; ring d; join c d", 1, "the call d is not connected"},
        {"dial c to 1; connect c; consult d from c to 2; connect d; transfer c to d; hangup d", 1,
         "d is over"},
        {"dial c to 1; connect c; consult d from c to 2; connect d; join c d; leave c by 3", 1,
         "3 is not in the conference c"},
        {"dial c to 1; connect c; consult d from c to 2; connect d; join c d; leave c; leave c", 1,
         "2001 is not in the conference c"},
        {"dial c to 1; connect c; consult d from c to 2; connect d; join c d; hangup c by caller", 1,
         "a conference has members, no caller"},
        {"callback anonymous", 1, "nobody can call an anonymous party back"},
        {"callback 1; callback 1 cancel; callback 1 cancel", 1, "no callback to 1 is set"},
        {"callback 1 because bored", 1, "\"bored\" is no reason (busy, noanswer)"},
        {"callback 1; callback 1 soon", 1, "\"soon\" is no progress (cancel, done, ringing)"},
        {"call c from 1; name c Ann", 1, "expected the name in quotation marks"},
        {"call c from 1; ring c; answer c; missed c", 1, "waits for no answer"},
        {"log keep missed 1", 1, "\"keep\" is no change of a log (add, clear, delete, print)"},
        {"log clear everything", 1, "\"everything\" is no log (dialled, group, missed, received)"},
        {"log add group 1 \"Ann\"", 1, "expected \"of\""},
        {"log delete missed", 1, "expected a number"},
        {"wait 1s; line 2050", 1, "stands before the first action"},
        {"device 2001; line 2001", 1, "the phone serves 2001 already"},
    };
    for (const FaultCase& one : cases) {
        try {
            static_cast<void>(Scenario::parse(one.text, "day.txt"));
            ADD_FAILURE() << "no fault found in: " << one.text;
        } catch (const ScenarioError& error) {
            EXPECT_EQ(error.line(), one.line) << one.text;
            EXPECT_THAT(error.what(), StartsWith("day.txt:" + std::to_string(one.line) + ": ")) << one.text;
            EXPECT_THAT(error.what(), HasSubstr(one.fault)) << one.text;
        }
    }
}

TEST(Scenario, SaysWhichFileItCannotRead) {
    try {
        static_cast<void>(Scenario::load("no-such-file.scenario"));
        FAIL();
    } catch (const ScenarioError& error) {
        EXPECT_THAT(error.what(), StartsWith("no-such-file.scenario: cannot be read: "));
    }
}

TEST(Scenario, MayBeEmpty) {
    EXPECT_TRUE(Scenario::parse("").steps().empty());
    EXPECT_TRUE(Scenario::parse("\n # nothing\n;;\n").steps().empty());
}

TEST(DemoScenario, BringsManyKindsOfCallsAtALivelyPace) {
    const Scenario demo = Scenario::parse(host::demoScenarioText(), "demo");
    EXPECT_GE(demo.callCount(), 10U);
    EXPECT_LE(demo.waitTime() / demo.callCount(), std::chrono::seconds(7));
    for (const Action kind :
         {Action::eGiveUp, Action::eAnswer, Action::eBusy, Action::eNoAnswer, Action::eDivert,
          Action::eElsewhere, Action::eHold, Action::eTransfer, Action::eJoin, Action::eCallBackSet}) {
        EXPECT_THAT(actions(demo), testing::Contains(kind));
    }
}

}  // namespace
