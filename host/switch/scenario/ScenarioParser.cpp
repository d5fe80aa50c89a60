#include "host/switch/scenario/ScenarioParser.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "host/switch/scenario/CallLogText.h"
#include "host/switch/scenario/ScenarioError.h"
#include "host/text-files/WholeFile.h"

namespace host {

namespace {

using Words = StatementReader::Words;

const Words kReasons = {{"noanswer", "callForwardNoAnswer"},   {"busy", "callForwardBusy"},
                        {"immediate", "callForwardImmediate"}, {"pickup", "callPickup"},
                        {"redirected", "redirected"},          {"distributed", "distributed"}};

const Words kCallBackReasons = {{"busy", "onBusy"}, {"noanswer", "onNoReply"}};
// A cancelled callback has the same progress as when it was set.
constexpr const char* kCancel = "cancel";
const Words kCallBackProgress = {{"ringing", "ringing"}, {"done", "done"}, {kCancel, kCancel}};

}  // namespace

Scenario parseScenario(std::string_view text, const std::string& source) {
    return ScenarioParser(scenarioStatements(text, source), source).parse();
}

Scenario loadScenario(const std::string& path) {
    constexpr std::size_t kMostBytes = 16U * 1024U * 1024U;
    std::string text;
    try {
        text = readWholeFile(path, kMostBytes);
    } catch (const std::runtime_error& failure) {
        throw ScenarioError(path, 0, std::string("cannot be read: ") + failure.what());
    }
    return parseScenario(text, path);
}

ScenarioParser::ScenarioParser(std::vector<ScenarioStatement> statements, std::string source)
    : m_reader(std::move(statements), std::move(source)) {
    m_calls.setPhone(Scenario::kDefaultDevice);
}

Scenario ScenarioParser::parse() {
    parseBlock(0);
    if (!m_reader.atEndOfText()) {
        m_reader.fail("\"end\" without \"repeat\"");
    }
    return std::move(m_scenario);
}

/// Parses up to the `end` of the block, which the caller consumes, or up to the end of the text.
void ScenarioParser::parseBlock(std::size_t repeatLine) {
    for (; !m_reader.atEndOfText(); m_reader.advance()) {
        if (m_reader.nextIs("end")) {
            return;
        }
        if (m_reader.nextIs("repeat")) {
            parseRepeat();
        } else {
            parseStatement();
        }
    }
    if (repeatLine > 0) {
        m_reader.failAt(repeatLine, "\"repeat\" without \"end\"");
    }
}

/// Parses the block once per pass, so that the states of the calls are also checked from one pass to the
/// next.
void ScenarioParser::parseRepeat() {
    const std::size_t line = m_reader.line();
    m_reader.expect("repeat");
    const unsigned times = m_reader.takeTimes();
    if (!m_reader.atEnd()) {
        m_reader.fail("nothing may follow the number; the block begins with the next statement");
    }
    const std::size_t first = m_reader.statement() + 1;
    for (unsigned pass = 0; pass < times; ++pass) {
        m_reader.seek(first);
        parseBlock(line);
        if (m_reader.statement() == first) {
            m_reader.fail("\"repeat\" has nothing to repeat");
        }
    }
    m_reader.expect("end");
    if (!m_reader.atEnd()) {
        m_reader.fail("nothing may follow \"end\"");
    }
}

void ScenarioParser::parseStatement() {
    if (parseDeclaration()) {
        return;
    }
    ScenarioStep step;
    step.line = m_reader.line();
    if (!parseStandaloneAction(step)) {
        parseAction(step);
    }
    m_reader.expectEnd();
    add(std::move(step));
}

bool ScenarioParser::parseDeclaration() {
    if (m_reader.take("device")) {
        parseDevice();
    } else if (m_reader.take("line")) {
        parseLine();
    } else {
        return false;
    }
    if (!m_reader.atEnd()) {
        m_reader.fail("nothing may follow the number");
    }
    return true;
}

void ScenarioParser::parseDevice() {
    const bool first = m_scenario.steps.empty() && m_scenario.lines.empty() && m_scenario.device.empty();
    if (!first) {
        m_reader.fail("\"device\" stands once, before everything else");
    }
    m_scenario.device = m_reader.takeWord("a number");
    m_calls.setPhone(m_scenario.device);
}

void ScenarioParser::parseLine() {
    if (!m_scenario.steps.empty()) {
        m_reader.fail("\"line\" stands before the first action");
    }
    const std::string number = m_reader.takeWord("a number");
    std::vector<std::string>& lines = m_scenario.lines;
    if (number == m_scenario.device || std::find(lines.begin(), lines.end(), number) != lines.end()) {
        m_reader.fail("the phone serves " + number + " already");
    }
    lines.push_back(number);
    m_calls.addLine(number);
}

/// Parses an action that needs no call of the scenario.
bool ScenarioParser::parseStandaloneAction(ScenarioStep& step) {
    using Action = ScenarioStep::Action;
    if (m_reader.take("wait")) {
        step.duration = m_reader.takeTime();
    } else if (m_reader.take("status")) {
        step.action = Action::eStatus;
        step.word = m_reader.takeWord("a status");
    } else if (m_reader.take("disconnect")) {
        step.action = Action::eDisconnect;
    } else if (m_reader.take("callback")) {
        parseCallBack(step);
    } else if (m_reader.take("log")) {
        parseLog(step);
    } else {
        return false;
    }
    return true;
}

/// Parses a change of the phone's logs that is made at the switch.
void ScenarioParser::parseLog(ScenarioStep& step) {
    using Action = ScenarioStep::Action;
    static const Words actions = {
        {"add", "add"}, {"delete", "delete"}, {"clear", "clear"}, {"print", "print"}};
    const std::string action = m_reader.takeOneOf("change of a log", actions);
    if (action == "print") {
        step.action = Action::eLogPrint;
        return;
    }
    step.log = callLogOf(m_reader.takeOneOf("log", callLogNames()));
    if (action == "clear") {
        step.action = Action::eLogClear;
        return;
    }
    step.action = action == "add" ? Action::eLogAdd : Action::eLogDelete;
    step.to = m_reader.takeParty();
    if (step.action == Action::eLogAdd && step.log == CallLogEntryEvent::eMissedGroup) {
        m_reader.expect("of");
        step.word = m_reader.takeQuoted("the group");
    }
}

void ScenarioParser::parseAction(ScenarioStep& step) {
    const std::string word = m_reader.takeWord("an action");
    const CallStates::Action* row = CallStates::find(word);
    if (row == nullptr) {
        m_reader.fail("\"" + word + "\" is no action");
    }
    if (word == "missed" && m_reader.take("from")) {
        step.action = ScenarioStep::Action::eReportMissed;
        step.from = m_reader.takeParty();
        return;
    }
    step.action = row->action;
    step.call = m_reader.takeWord("the name of a call");
    parseDetails(step);
    m_calls.apply(
        step.action == ScenarioStep::Action::eSingleStepTransfer ? CallStates::singleStepTransfer() : *row,
        step);
}

void ScenarioParser::parseDetails(ScenarioStep& step) {
    using Action = ScenarioStep::Action;
    switch (step.action) {
        case Action::eCall:
        case Action::eDial: parseCall(step); break;
        case Action::eConsult: parseConsult(step); break;
        case Action::eDivert: parseDivert(step); break;
        case Action::ePickUp: parsePickUp(step); break;
        case Action::eTransfer: parseTransfer(step); break;
        case Action::eJoin: parseJoin(step); break;
        case Action::eLeave: parseLeave(step); break;
        case Action::eName: step.word = m_reader.takeQuoted("the name"); break;
        case Action::eHold:
        case Action::eRetrieve:
        case Action::eHangUp: parseBy(step); break;
        default: break;
    }
}

void ScenarioParser::parseCallBack(ScenarioStep& step) {
    step.action = ScenarioStep::Action::eCallBackSet;
    step.to = m_reader.takeParty();
    if (step.to.anonymous) {
        m_reader.fail("an anonymous party cannot be called back");
    }
    const bool sets = m_reader.atEnd() || m_reader.nextIs("because");
    if (!sets && !m_callBacks.contains(step.to.number)) {
        m_reader.fail("no callback to " + step.to.number + " is set");
    }
    CallBack& known = m_callBacks[step.to.number];
    known.name = step.to.name.empty() ? known.name : step.to.name;
    step.to.name = known.name;
    if (sets) {
        known.reason =
            m_reader.take("because") ? m_reader.takeOneOf("reason", kCallBackReasons) : "onRequest";
        step.word = known.reason + " requested";
        return;
    }
    const std::string progress = m_reader.takeOneOf("progress", kCallBackProgress);
    const bool cancels = progress == kCancel;
    step.action = cancels ? ScenarioStep::Action::eCallBackCancel : step.action;
    step.word = known.reason + " " + (cancels ? "requested" : progress);
    if (progress != "ringing") {
        m_callBacks.erase(step.to.number);
    }
}

void ScenarioParser::parseCall(ScenarioStep& step) {
    const bool outgoing = step.action == ScenarioStep::Action::eDial;
    if (!outgoing || m_reader.nextIs("from")) {
        m_reader.expect("from");
        step.from = m_reader.takeParty();
    }
    if (outgoing || m_reader.nextIs("to")) {
        m_reader.expect("to");
        step.to = m_reader.takeParty();
    }
    if (m_reader.take("via")) {
        step.redirectedFrom = m_reader.takeParty();
        step.word = m_reader.take("because") ? m_reader.takeOneOf("reason", kReasons) : "callForward";
    }
}

void ScenarioParser::parseConsult(ScenarioStep& step) {
    m_reader.expect("from");
    step.other = m_reader.takeWord("the name of the call to hold");
    m_reader.expect("to");
    step.to = m_reader.takeParty();
    parseBy(step);
}

void ScenarioParser::parseDivert(ScenarioStep& step) {
    m_reader.expect("to");
    step.to = m_reader.takeParty();
    step.word = m_reader.take("reason") ? m_reader.takeOneOf("reason", kReasons) : "callForward";
}

void ScenarioParser::parsePickUp(ScenarioStep& step) {
    if (m_reader.take("by")) {
        step.to = m_reader.takeParty();
    }
}

/// A transfer to another call if a call of that name was made or if the call is held; otherwise to a party.
void ScenarioParser::parseTransfer(ScenarioStep& step) {
    m_reader.expect("to");
    if (m_calls.isKnown(m_reader.peek()) || m_calls.stateOf(step.call) == CallStates::State::eHeld) {
        step.other = m_reader.takeWord("the name of the other call");
    } else {
        step.action = ScenarioStep::Action::eSingleStepTransfer;
        step.to = m_reader.takeParty();
        parseBy(step);
    }
}

void ScenarioParser::parseJoin(ScenarioStep& step) {
    step.other = m_reader.takeWord("the name of the other call");
}

void ScenarioParser::parseLeave(ScenarioStep& step) {
    if (m_reader.take("by")) {
        step.to = m_reader.takeParty();
    }
}

void ScenarioParser::parseBy(ScenarioStep& step) {
    if (m_reader.take("by")) {
        step.party = m_reader.takeWord("\"caller\" or \"called\"");
        if (step.party != "caller" && step.party != "called") {
            m_reader.fail("\"" + step.party + "\" is neither \"caller\" nor \"called\"");
        }
    }
}

void ScenarioParser::add(ScenarioStep step) {
    if (m_scenario.steps.size() == kMaxSteps) {
        m_reader.fail("the scenario has more than " + std::to_string(kMaxSteps) + " steps");
    }
    m_scenario.waitTime += step.duration;
    m_scenario.callCount += makesCall(step) ? 1 : 0;
    m_scenario.steps.push_back(std::move(step));
}

}  // namespace host
