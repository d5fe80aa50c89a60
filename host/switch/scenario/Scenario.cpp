#include "host/switch/scenario/Scenario.h"

#include <cerrno>
#include <cstring>
#include <fstream>
#include <sstream>
#include <system_error>

#include "host/switch/scenario/ScenarioParser.h"

namespace host {

ScenarioError::ScenarioError(const std::string& source, std::size_t line, const std::string& fault)
    : std::runtime_error(source + (line == 0 ? "" : ":" + std::to_string(line)) + ": " + fault),
      m_line(line) {}

Scenario Scenario::parse(std::string_view text, const std::string& source) {
    return ScenarioParser(scenarioStatements(text, source), source).parse();
}

Scenario Scenario::load(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    if (file) {
        text << file.rdbuf();
    }
    if (!file) {
        throw ScenarioError(path, 0, "cannot be read: " + std::generic_category().message(errno));
    }
    return parse(text.str(), path);
}

}  // namespace host
