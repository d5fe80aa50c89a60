#include "host/switch/scenario/ScenarioTokens.h"

#include <utility>

#include "host/switch/scenario/ScenarioError.h"

namespace host {

namespace {

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r';
}

/// Reads the statements of one text line.
class StatementScanner {
public:
    StatementScanner(std::string_view line, std::size_t number, const std::string& source)
        : m_line(line), m_number(number), m_source(source) {}

    void read(std::vector<ScenarioStatement>& statements) {
        ScenarioStatement statement{m_number, {}};
        while (m_at < m_line.size() && m_line[m_at] != '#') {
            if (m_line[m_at] == ';') {
                finish(statement, statements);
                ++m_at;
            } else if (isBlank(m_line[m_at])) {
                ++m_at;
            } else {
                statement.tokens.push_back(m_line[m_at] == '"' ? quoted() : word());
            }
        }
        finish(statement, statements);
    }

private:
    void finish(ScenarioStatement& statement, std::vector<ScenarioStatement>& statements) const {
        if (!statement.tokens.empty()) {
            statements.push_back(std::exchange(statement, ScenarioStatement{m_number, {}}));
        }
    }

    ScenarioToken quoted() {
        const std::size_t end = m_line.find('"', m_at + 1);
        if (end == std::string_view::npos) {
            throw ScenarioError(m_source, m_number, "a quotation mark has no partner");
        }
        const std::string_view text = m_line.substr(m_at + 1, end - m_at - 1);
        m_at = end + 1;
        return {std::string(text), true};
    }

    ScenarioToken word() {
        const std::size_t begin = m_at;
        while (m_at < m_line.size() && !isBlank(m_line[m_at]) &&
               std::string_view(";#\"").find(m_line[m_at]) == std::string_view::npos) {
            ++m_at;
        }
        return {std::string(m_line.substr(begin, m_at - begin)), false};
    }

    const std::string_view m_line;
    const std::size_t m_number;
    const std::string& m_source;
    std::size_t m_at = 0;
};

}  // namespace

std::vector<ScenarioStatement> scenarioStatements(std::string_view text, const std::string& source) {
    std::vector<ScenarioStatement> statements;
    for (std::size_t number = 1; !text.empty(); ++number) {
        const std::string_view line = text.substr(0, text.find('\n'));
        StatementScanner(line, number, source).read(statements);
        text.remove_prefix(line.size() == text.size() ? line.size() : line.size() + 1);
    }
    return statements;
}

}  // namespace host
