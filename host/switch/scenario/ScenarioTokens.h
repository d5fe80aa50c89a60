#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace host {

/// One word of a scenario text. A quoted word may hold anything but a line break.
struct ScenarioToken {
    std::string text;
    bool quoted = false;
};

struct ScenarioStatement {
    std::size_t line = 0;
    std::vector<ScenarioToken> tokens;
};

/// Cuts a text into statements: one a line, or several with `;` between them; `#` begins a comment. Throws
/// `ScenarioError` for a quotation mark without its partner.
[[nodiscard]] std::vector<ScenarioStatement> scenarioStatements(std::string_view text,
                                                                const std::string& source);

}  // namespace host
