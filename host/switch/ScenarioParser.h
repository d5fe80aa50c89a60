#pragma once

#include <chrono>
#include <cstddef>
#include <map>
#include <string>
#include <vector>

#include "host/switch/Scenario.h"
#include "host/switch/ScenarioTokens.h"

namespace host {

/// Builds a `Scenario` from its statements and checks on the way that every action fits the state of its call ("c1
/// does not ring"). Lives for the length of one parse.
class ScenarioParser {
public:
    /// A guard against a `repeat` that would fill the memory.
    static constexpr std::size_t kMaxSteps = 200000;

    ScenarioParser(std::vector<ScenarioStatement> statements, std::string source);

    /// Throws `ScenarioError`.
    [[nodiscard]] Scenario parse();

private:
    enum class CallState { eOver, eMade, eDialled, eRinging, eUp, eHeld };
    struct ActionRow;

    [[nodiscard]] static const std::vector<ActionRow>& actionRows();

    void parseBlock(std::size_t repeatLine);
    void parseRepeat();
    void parseStatement();
    void parseDevice();
    void parseWait(ScenarioStep& step);
    void parseCall(ScenarioStep& step);
    void parseDivert(ScenarioStep& step);
    void parseBy(ScenarioStep& step);
    void add(ScenarioStep step);
    void advanceCall(const ActionRow& row, const std::string& call);

    // Reading the present statement.
    [[nodiscard]] bool atEnd() const;
    [[nodiscard]] bool nextIs(const char* word) const;
    bool take(const char* word);
    void expect(const char* word);
    [[nodiscard]] std::string takeWord(const char* what);
    [[nodiscard]] Party takeParty();
    [[nodiscard]] std::string takeReason();
    [[noreturn]] void fail(const std::string& fault) const;

    const std::vector<ScenarioStatement> m_statements;
    const std::string m_source;
    Scenario m_scenario;
    std::map<std::string, CallState> m_calls;
    std::size_t m_statement = 0;
    std::size_t m_token = 0;
};

}  // namespace host
