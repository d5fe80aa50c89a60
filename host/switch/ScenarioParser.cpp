#include "host/switch/ScenarioParser.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <utility>

namespace host {

/// What a word does, to calls in which state, and what they are then.
struct ScenarioParser::ActionRow {
    const char* word;
    ScenarioStep::Action action;
    std::vector<CallState> fits;
    CallState then;
    /// Why not, when the call is in another state.
    const char* objection;
};

const std::vector<ScenarioParser::ActionRow>& ScenarioParser::actionRows() {
    using Action = ScenarioStep::Action;
    using enum CallState;
    static const std::vector<ActionRow> rows = {
        {"call", Action::eCall, {eOver}, eMade, "is still there"},
        {"dial", Action::eDial, {eOver}, eDialled, "is still there"},
        {"ring", Action::eRing, {eMade, eDialled}, eRinging, "cannot ring now"},
        {"answer", Action::eAnswer, {eRinging}, eUp, "does not ring"},
        {"connect", Action::eAnswer, {eDialled, eRinging}, eUp, "waits for no answer"},
        {"hold", Action::eHold, {eUp}, eHeld, "is not connected"},
        {"retrieve", Action::eRetrieve, {eHeld}, eUp, "is not held"},
        {"hangup", Action::eHangUp, {eDialled, eRinging, eUp, eHeld}, eOver, "is not there"},
        {"giveup", Action::eGiveUp, {eMade, eDialled, eRinging}, eOver, "waits for no answer"},
        {"busy", Action::eBusy, {eDialled}, eOver, "was not just dialled"},
        {"noanswer", Action::eNoAnswer, {eDialled, eRinging}, eOver, "waits for no answer"},
        {"divert", Action::eDivert, {eMade, eRinging}, eRinging, "waits for no answer"},
        {"elsewhere", Action::eElsewhere, {eRinging}, eOver, "does not ring"},
    };
    return rows;
}

ScenarioParser::ScenarioParser(std::vector<ScenarioStatement> statements, std::string source)
    : m_statements(std::move(statements)), m_source(std::move(source)) {}

Scenario ScenarioParser::parse() {
    parseBlock(0);
    if (m_statement < m_statements.size()) {
        fail("\"end\" without \"repeat\"");
    }
    return std::move(m_scenario);
}

/// Up to the `end` of the block, which is left to the caller, or up to the end of the text.
void ScenarioParser::parseBlock(std::size_t repeatLine) {
    while (m_statement < m_statements.size()) {
        m_token = 0;
        if (nextIs("end")) {
            return;
        }
        if (nextIs("repeat")) {
            parseRepeat();
        } else {
            parseStatement();
        }
        ++m_statement;
    }
    if (repeatLine > 0) {
        throw ScenarioError(m_source, repeatLine, "\"repeat\" without \"end\"");
    }
}

/// Reads the block once for each pass, so that the states of the calls are checked over its seam, too.
void ScenarioParser::parseRepeat() {
    const std::size_t line = m_statements[m_statement].line;
    expect("repeat");
    const std::string text = takeWord("how often to repeat");
    unsigned times = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), times);
    if (result.ec != std::errc() || result.ptr != text.data() + text.size() || times == 0) {
        fail("\"" + text + "\" is no number of times");
    }
    if (!atEnd()) {
        fail("nothing may follow the number; the block begins with the next statement");
    }
    const std::size_t first = m_statement + 1;
    for (unsigned pass = 0; pass < times; ++pass) {
        m_statement = first;
        parseBlock(line);
        if (m_statement == first) {
            fail("\"repeat\" has nothing to repeat");
        }
    }
    m_token = 1;
    if (!atEnd()) {
        fail("nothing may follow \"end\"");
    }
}

void ScenarioParser::parseStatement() {
    ScenarioStep step;
    step.line = m_statements[m_statement].line;
    const std::string word = takeWord("an action");
    if (word == "device") {
        parseDevice();
        return;
    }
    if (word == "wait") {
        parseWait(step);
    } else if (word == "status") {
        step.action = ScenarioStep::Action::eStatus;
        step.word = takeWord("a status");
    } else {
        const auto row = std::find_if(actionRows().begin(), actionRows().end(),
                                      [&word](const ActionRow& candidate) { return candidate.word == word; });
        if (row == actionRows().end()) {
            fail("\"" + word + "\" is no action");
        }
        step.action = row->action;
        step.call = takeWord("the name of a call");
        advanceCall(*row, step.call);
        switch (row->action) {
            case ScenarioStep::Action::eCall:
            case ScenarioStep::Action::eDial: parseCall(step); break;
            case ScenarioStep::Action::eDivert: parseDivert(step); break;
            case ScenarioStep::Action::eHold:
            case ScenarioStep::Action::eRetrieve:
            case ScenarioStep::Action::eHangUp: parseBy(step); break;
            default: break;
        }
    }
    if (!atEnd()) {
        fail("\"" + m_statements[m_statement].tokens[m_token].text + "\" does not belong here");
    }
    add(std::move(step));
}

void ScenarioParser::parseDevice() {
    if (!m_scenario.m_steps.empty() || !m_scenario.m_device.empty()) {
        fail("\"device\" stands once, before everything else");
    }
    m_scenario.m_device = takeWord("a number");
    if (!atEnd()) {
        fail("nothing may follow the device's number");
    }
}

void ScenarioParser::parseWait(ScenarioStep& step) {
    const std::string text = takeWord("a time");
    char* unit = nullptr;
    const double number = std::strtod(text.c_str(), &unit);
    const std::string name = unit;
    const double factor = name == "ms" ? 1 : name == "s" ? 1000 : name == "m" ? 60000 : 0;
    if (unit == text.c_str() || factor == 0 || !std::isfinite(number) || number < 0 ||
        number * factor > 86400000) {
        fail("\"" + text + "\" is no time (500ms, 2s, 1m; a day at most)");
    }
    step.duration = std::chrono::milliseconds(std::llround(number * factor));
}

void ScenarioParser::parseCall(ScenarioStep& step) {
    const bool outgoing = step.action == ScenarioStep::Action::eDial;
    if (!outgoing || nextIs("from")) {
        expect("from");
        step.from = takeParty();
    }
    if (outgoing || nextIs("to")) {
        expect("to");
        step.to = takeParty();
    }
    if (take("via")) {
        step.redirectedFrom = takeParty();
        step.word = take("because") ? takeReason() : "callForward";
    }
}

void ScenarioParser::parseDivert(ScenarioStep& step) {
    expect("to");
    step.to = takeParty();
    step.word = take("reason") ? takeReason() : "callForward";
    if (step.word == "callPickup") {
        m_calls[step.call] = CallState::eUp;
    }
}

void ScenarioParser::parseBy(ScenarioStep& step) {
    if (take("by")) {
        step.party = takeWord("\"caller\" or \"called\"");
        if (step.party != "caller" && step.party != "called") {
            fail("\"" + step.party + "\" is neither \"caller\" nor \"called\"");
        }
    }
}

void ScenarioParser::add(ScenarioStep step) {
    if (m_scenario.m_steps.size() == kMaxSteps) {
        fail("the scenario has more than " + std::to_string(kMaxSteps) + " steps");
    }
    m_scenario.m_waits += step.duration;
    const bool begins =
        step.action == ScenarioStep::Action::eCall || step.action == ScenarioStep::Action::eDial;
    m_scenario.m_calls += begins ? 1 : 0;
    m_scenario.m_steps.push_back(std::move(step));
}

void ScenarioParser::advanceCall(const ActionRow& row, const std::string& call) {
    const auto known = m_calls.find(call);
    const CallState state = known == m_calls.end() ? CallState::eOver : known->second;
    if (std::find(row.fits.begin(), row.fits.end(), state) == row.fits.end()) {
        fail("\"" + std::string(row.word) + "\": the call " + call + " " +
             (known == m_calls.end()      ? "was never made"
              : state == CallState::eOver ? "is over"
                                          : row.objection));
    }
    m_calls[call] = row.then;
}

bool ScenarioParser::atEnd() const {
    return m_token == m_statements[m_statement].tokens.size();
}

bool ScenarioParser::nextIs(const char* word) const {
    const std::vector<ScenarioToken>& tokens = m_statements[m_statement].tokens;
    return m_token < tokens.size() && !tokens[m_token].quoted && tokens[m_token].text == word;
}

bool ScenarioParser::take(const char* word) {
    const bool fits = nextIs(word);
    m_token += fits ? 1 : 0;
    return fits;
}

void ScenarioParser::expect(const char* word) {
    if (!take(word)) {
        fail("expected \"" + std::string(word) + "\"" +
             (atEnd() ? "" : " before \"" + m_statements[m_statement].tokens[m_token].text + "\""));
    }
}

std::string ScenarioParser::takeWord(const char* what) {
    if (atEnd() || m_statements[m_statement].tokens[m_token].quoted) {
        fail("expected " + std::string(what));
    }
    return m_statements[m_statement].tokens[m_token++].text;
}

Party ScenarioParser::takeParty() {
    Party party;
    const std::string number = takeWord("a number, or \"anonymous\"");
    party.anonymous = number == "anonymous";
    party.number = party.anonymous ? "" : number;
    if (!atEnd() && m_statements[m_statement].tokens[m_token].quoted) {
        party.name = m_statements[m_statement].tokens[m_token++].text;
    }
    return party;
}

std::string ScenarioParser::takeReason() {
    static const std::map<std::string, std::string> words = {
        {"noanswer", "callForwardNoAnswer"},   {"busy", "callForwardBusy"},
        {"immediate", "callForwardImmediate"}, {"pickup", "callPickup"},
        {"redirected", "redirected"},          {"distributed", "distributed"}};
    const std::string reason = takeWord("a reason");
    const auto found = words.find(reason);
    if (found == words.end()) {
        fail("\"" + reason + "\" is no reason (noanswer, busy, immediate, pickup, redirected, distributed)");
    }
    return found->second;
}

void ScenarioParser::fail(const std::string& fault) const {
    const std::size_t index = std::min(m_statement, m_statements.size() - 1);
    throw ScenarioError(m_source, m_statements.empty() ? 0 : m_statements[index].line, fault);
}

}  // namespace host
