#include "apps/calljournal/command-line/OutputOption.h"

#include <CLI/CLI.hpp>
#include <functional>

namespace calljournal {

CLI::Option* OutputOption::addTo(CLI::App& app, Forms forms) {
    const bool hasCsv = forms == Forms::eAll;
    CLI::Option* const json = app.add_flag("--json", m_json, "print one JSON object, as -o json");
    app.add_option("-o,--output", m_form,
                   hasCsv ? "the form: a table, one JSON object, or comma-separated values [table]"
                          : "the form: a table, or one JSON object [table]")
        ->type_name(hasCsv ? "table|json|csv" : "table|json")
        ->excludes(json)
        ->check(std::function<std::string(const std::string&)>([hasCsv](const std::string& form) {
            if (form == "table" || form == "json" || (hasCsv && form == "csv")) {
                return std::string();
            }
            return "there is no form " + form + "; it is table" + (hasCsv ? ", json or csv" : " or json");
        }));
    return json;
}

}  // namespace calljournal
