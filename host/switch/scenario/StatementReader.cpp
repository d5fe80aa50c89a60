#include "host/switch/scenario/StatementReader.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <utility>

#include "host/switch/scenario/ScenarioError.h"

namespace host {

StatementReader::StatementReader(std::vector<ScenarioStatement> statements, std::string source)
    : m_statements(std::move(statements)), m_source(std::move(source)) {}

void StatementReader::seek(std::size_t statement) noexcept {
    m_statement = statement;
    m_token = 0;
}

bool StatementReader::atEnd() const {
    return m_token == tokens().size();
}

bool StatementReader::nextIs(const std::string& word) const {
    return !atEnd() && !tokens()[m_token].quoted && tokens()[m_token].text == word;
}

std::string StatementReader::peek() const {
    return atEnd() || tokens()[m_token].quoted ? std::string() : tokens()[m_token].text;
}

bool StatementReader::take(const std::string& word) {
    const bool fits = nextIs(word);
    m_token += fits ? 1 : 0;
    return fits;
}

void StatementReader::expect(const std::string& word) {
    if (!take(word)) {
        fail("expected \"" + word + "\"" + (atEnd() ? "" : " before \"" + tokens()[m_token].text + "\""));
    }
}

void StatementReader::expectEnd() const {
    if (!atEnd()) {
        fail("\"" + tokens()[m_token].text + "\" does not belong here");
    }
}

std::string StatementReader::takeWord(const char* what) {
    if (atEnd() || tokens()[m_token].quoted) {
        fail("expected " + std::string(what));
    }
    return tokens()[m_token++].text;
}

std::string StatementReader::takeQuoted(const char* what) {
    if (atEnd() || !tokens()[m_token].quoted) {
        fail("expected " + std::string(what) + " in quotation marks");
    }
    return tokens()[m_token++].text;
}

SwitchParty StatementReader::takeParty() {
    SwitchParty party;
    const std::string number = takeWord("a number, or \"anonymous\"");
    party.anonymous = number == "anonymous";
    party.number = party.anonymous ? "" : number;
    if (!atEnd() && tokens()[m_token].quoted) {
        party.name = tokens()[m_token++].text;
    }
    return party;
}

std::string StatementReader::takeOneOf(const std::string& kind, const Words& words) {
    const std::string word = takeWord(("a " + kind).c_str());
    const auto found = words.find(word);
    if (found == words.end()) {
        std::string all;
        for (const auto& [known, meaning] : words) {
            all += (all.empty() ? "" : ", ") + known;
        }
        fail("\"" + word + "\" is no " + kind + " (" + all + ")");
    }
    return found->second;
}

std::chrono::milliseconds StatementReader::takeTime() {
    const std::string text = takeWord("a time");
    char* unit = nullptr;
    const double number = std::strtod(text.c_str(), &unit);
    const std::string name = unit;
    const double factor = name == "ms" ? 1 : name == "s" ? 1000 : name == "m" ? 60000 : 0;
    if (unit == text.c_str() || factor == 0 || !std::isfinite(number) || number < 0 ||
        number * factor > 86400000) {
        fail("\"" + text + "\" is no time (500ms, 2s, 1m; a day at most)");
    }
    return std::chrono::milliseconds(std::llround(number * factor));
}

unsigned StatementReader::takeTimes() {
    const std::string text = takeWord("how often to repeat");
    unsigned times = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), times);
    if (result.ec != std::errc() || result.ptr != text.data() + text.size() || times == 0) {
        fail("\"" + text + "\" is no number of times");
    }
    return times;
}

void StatementReader::fail(const std::string& fault) const {
    const std::size_t index = std::min(m_statement, m_statements.size() - 1);
    failAt(m_statements.empty() ? 0 : m_statements[index].line, fault);
}

void StatementReader::failAt(std::size_t line, const std::string& fault) const {
    throw ScenarioError(m_source, line, fault);
}

}  // namespace host
