#pragma once

#include <string>

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace calljournal {

/// The form in which a command prints what it has: -o FORM, or --json for -o json. One thread.
///
/// Requires: the object outlives the `app` that its options are added to.
class OutputOption {
public:
    enum class Forms { eTableAndJson, eAll };

    OutputOption() = default;
    OutputOption(const OutputOption&) = delete;
    OutputOption& operator=(const OutputOption&) = delete;

    /// Adds -o and --json. Returns the option --json.
    CLI::Option* addTo(CLI::App& app, Forms forms = Forms::eAll);

    [[nodiscard]] bool isJson() const { return m_json || m_form == "json"; }
    [[nodiscard]] bool isCsv() const { return m_form == "csv"; }
    /// For people.
    [[nodiscard]] bool isTable() const { return !isJson() && !isCsv(); }

private:
    std::string m_form;
    bool m_json = false;
};

}  // namespace calljournal
