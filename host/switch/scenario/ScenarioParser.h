#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "host/switch/scenario/CallStates.h"
#include "host/switch/scenario/Scenario.h"
#include "host/switch/scenario/StatementReader.h"

namespace host {

/// Reads a scenario. `source` is the name of the text in errors. Throws `ScenarioError` at the first fault.
[[nodiscard]] Scenario parseScenario(std::string_view text, const std::string& source = "scenario");
/// Reads a scenario from a file. Throws `ScenarioError`, also for a file that cannot be read.
[[nodiscard]] Scenario loadScenario(const std::string& path);

/// Builds a `Scenario` from its statements: the arguments of each word, and the repetition of blocks. Use one
/// object per scenario.
class ScenarioParser {
public:
    /// Limits the memory that `repeat` may use.
    static constexpr std::size_t kMaxSteps = 200000;

    ScenarioParser(std::vector<ScenarioStatement> statements, std::string source);

    /// Throws `ScenarioError`.
    [[nodiscard]] Scenario parse();

private:
    void parseBlock(std::size_t repeatLine);
    void parseRepeat();
    void parseStatement();
    [[nodiscard]] bool parseDeclaration();
    [[nodiscard]] bool parseStandaloneAction(ScenarioStep& step);
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
        /// The reason for the callback: the word on the wire.
        std::string reason;
    };
    /// The callbacks that are set, by the number of the party.
    std::map<std::string, CallBack> m_callBacks;
};

}  // namespace host
