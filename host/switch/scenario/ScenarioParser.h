#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <vector>

#include "host/switch/scenario/CallStates.h"
#include "host/switch/scenario/Scenario.h"
#include "host/switch/scenario/StatementReader.h"

namespace host {

/// Builds a `Scenario` from its statements: what each word wants behind it, and how blocks are repeated. Lives for the
/// length of one parse.
class ScenarioParser {
public:
    /// A guard against a `repeat` that would fill the memory.
    static constexpr std::size_t kMaxSteps = 200000;

    ScenarioParser(std::vector<ScenarioStatement> statements, std::string source);

    /// Throws `ScenarioError`.
    [[nodiscard]] Scenario parse();

private:
    void parseBlock(std::size_t repeatLine);
    void parseRepeat();
    void parseStatement();
    [[nodiscard]] bool parseDeclaration();
    [[nodiscard]] bool parseOccasion(ScenarioStep& step);
    void parseAction(ScenarioStep& step);
    void parseDetails(ScenarioStep& step);

    void parseDevice();
    void parseLine();
    void parseCallBack(ScenarioStep& step);
    void parseLog(ScenarioStep& step);
    void parseCall(ScenarioStep& step);
    void parseConsult(ScenarioStep& step);
    void parseDivert(ScenarioStep& step);
    void parsePickUp(ScenarioStep& step);
    void parseTransfer(ScenarioStep& step);
    void parseJoin(ScenarioStep& step);
    void parseLeave(ScenarioStep& step);
    void parseBy(ScenarioStep& step);
    void add(ScenarioStep step);

    StatementReader m_reader;
    CallStates m_calls{m_reader};
    Scenario m_scenario;
    struct CallBack {
        std::string name;
        /// What it waits for.
        std::string reason;
    };
    /// Those that are set, by the number of the party.
    std::map<std::string, CallBack> m_callBacks;
};

}  // namespace host
