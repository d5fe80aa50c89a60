#pragma once

#include <chrono>
#include <cstddef>
#include <map>
#include <string>
#include <vector>

#include "host/switch/scenario/ScenarioStep.h"
#include "host/switch/scenario/ScenarioTokens.h"

namespace host {

/// Reads the statements of a scenario word by word. An operation that expects a certain word throws
/// `ScenarioError` for another one.
class StatementReader {
public:
    using Words = std::map<std::string, std::string>;

    StatementReader(std::vector<ScenarioStatement> statements, std::string source);

    // Position in the list of statements.
    [[nodiscard]] bool atEndOfText() const noexcept { return m_statement == m_statements.size(); }
    [[nodiscard]] std::size_t statement() const noexcept { return m_statement; }
    void seek(std::size_t statement) noexcept;
    void advance() noexcept { seek(m_statement + 1); }
    [[nodiscard]] std::size_t line() const { return m_statements[m_statement].line; }

    // Words of the current statement.
    [[nodiscard]] bool atEnd() const;
    [[nodiscard]] bool nextIs(const std::string& word) const;
    /// The next word, which is not consumed; empty if there is none.
    [[nodiscard]] std::string peek() const;
    /// Consumes the next word and returns true if it is `word`.
    bool take(const std::string& word);
    void expect(const std::string& word);
    void expectEnd() const;
    [[nodiscard]] std::string takeWord(const char* what);
    [[nodiscard]] std::string takeQuoted(const char* what);
    [[nodiscard]] SwitchParty takeParty();
    /// Consumes one of `words` and returns its meaning. `kind` describes the words in the error text.
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
