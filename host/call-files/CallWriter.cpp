#include "host/call-files/CallWriter.h"

#include <nlohmann/json.hpp>

#include "host/text-files/CsvCell.h"

namespace host {
namespace {

using Json = nlohmann::ordered_json;

constexpr const char* kLineEnd = "\r\n";

std::string textOf(const Json& value) {
    return value.dump(-1, ' ', false, Json::error_handler_t::replace);
}

std::string cellOf(const Json& call, std::string_view member) {
    const auto found = call.find(member);
    if (found == call.end() || found->is_null()) {
        return {};
    }
    return found->is_string() ? csvCell(found->get_ref<const std::string&>()) : csvCell(textOf(*found));
}

}  // namespace

std::string callCsvHead() {
    std::string row;
    for (const std::string_view member : kCallMembers) {
        row.append(row.empty() ? "" : ",").append(member);
    }
    return row + kLineEnd;
}

std::string callCsvRow(const Json& call) {
    std::string row;
    const char* between = "";
    for (const std::string_view member : kCallMembers) {
        row += between + cellOf(call, member);
        between = ",";
    }
    return row + kLineEnd;
}

std::string callJsonLine(const Json& call) {
    return textOf(call) + '\n';
}

}  // namespace host
