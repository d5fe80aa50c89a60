#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace host {

/// One word of a scenario text. A quoted word may contain anything except a line break.
struct ScenarioToken {
    std::string text;
    bool quoted = false;
};

struct ScenarioStatement {
    std::size_t line = 0;
    std::vector<ScenarioToken> tokens;
};

/// Splits a text into statements: one per line, or several separated by `;`. `#` begins a comment. Throws
/// `ScenarioError` for an unclosed quotation mark.
[[nodiscard]] std::vector<ScenarioStatement> scenarioStatements(std::string_view text,
                                                                const std::string& source);

}  // namespace host
