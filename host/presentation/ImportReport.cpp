#include "host/presentation/ImportReport.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <utility>

namespace host {

nlohmann::ordered_json importJson(const ImportReport& report, std::size_t maxNotes) {
    using Json = nlohmann::ordered_json;
    Json skipped = Json::array();
    Json remarks = Json::array();
    for (std::size_t index = 0; index < std::min(maxNotes, report.notes.size()); ++index) {
        const ImportReport::Note& note = report.notes[index];
        (note.skipped ? skipped : remarks).push_back({{"line", note.line}, {"text", note.text}});
    }
    return {{"read", report.read},           {"added", report.added},
            {"changed", report.changed},     {"unchanged", report.unchanged},
            {"skipped", std::move(skipped)}, {"remarks", std::move(remarks)}};
}

}  // namespace host
