#pragma once

#include <chrono>
#include <cstddef>
#include <map>
#include <string>
#include <vector>

#include "host/switch/scenario/ScenarioStep.h"
#include "host/switch/scenario/ScenarioTokens.h"

namespace host {

/// Reads the statements of a scenario word by word, from the one that it stands at. Every operation that expects something
/// throws a `ScenarioError` when something else comes.
class StatementReader {
public:
    using Words = std::map<std::string, std::string>;

    StatementReader(std::vector<ScenarioStatement> statements, std::string source);

    // Going from one statement to another.
    [[nodiscard]] bool atEndOfText() const noexcept { return m_statement == m_statements.size(); }
    [[nodiscard]] std::size_t statement() const noexcept { return m_statement; }
    void goTo(std::size_t statement) noexcept;
    void goOn() noexcept { goTo(m_statement + 1); }
    [[nodiscard]] std::size_t line() const { return m_statements[m_statement].line; }

    // Reading the present one.
    [[nodiscard]] bool atEnd() const;
    [[nodiscard]] bool nextIs(const std::string& word) const;
    /// The next word without taking it; empty when there is none.
    [[nodiscard]] std::string next() const;
    bool take(const std::string& word);
    void expect(const std::string& word);
    void expectEnd() const;
    [[nodiscard]] std::string takeWord(const char* what);
    [[nodiscard]] std::string takeQuoted(const char* what);
    [[nodiscard]] Party takeParty();
    /// What one of the words, of which there is one for each `kind` of thing, stands for.
    [[nodiscard]] std::string takeOneOf(const std::string& kind, const Words& words);
    [[nodiscard]] std::chrono::milliseconds takeTime();
    [[nodiscard]] unsigned takeTimes();

    [[noreturn]] void fail(const std::string& fault) const;
    [[noreturn]] void failAt(std::size_t line, const std::string& fault) const;

private:
    [[nodiscard]] const std::vector<ScenarioToken>& tokens() const {
        return m_statements[m_statement].tokens;
    }

    const std::vector<ScenarioStatement> m_statements;
    const std::string m_source;
    std::size_t m_statement = 0;
    std::size_t m_token = 0;
};

}  // namespace host
