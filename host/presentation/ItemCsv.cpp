#include "host/presentation/ItemCsv.h"

#include <cstddef>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <string_view>
#include <type_traits>

#include "host/presentation/ItemJson.h"
#include "platform/client-utils/Utf8.h"

namespace host {
namespace {

using Json = nlohmann::ordered_json;

constexpr const char* kOccurrences = "occurrences";
constexpr std::uint32_t kReplacement = 0xFFFD;

/// An item with one call, all members empty: the source of a list's columns.
Json emptyItem(ListName list) {
    return withItemOf(list, []<typename Item>() {
        Item item;
        if constexpr (!std::is_same_v<Item, CallBackItem>) {
            item.addCallInfoToList({});
        }
        return itemJson(item);
    });
}

/// True for a member that every occurrence has and the item repeats for its newest.
bool isRepeated(const Json& item, const std::string& member) {
    return item.contains(kOccurrences) && (member == "number" || member == "time");
}

std::string withoutControls(std::string_view text) {
    std::string clean;
    for (std::size_t at = 0; at < text.size();) {
        const utf8::Step step = utf8::next(text, at);
        const bool isControl = (step.character < 0x20 && step.character != '\t' && step.character != '\n' &&
                                step.character != '\r') ||
                               (step.character >= 0x7F && step.character < 0xA0);
        if (isControl || step.character == utf8::kInvalid) {
            utf8::append(clean, kReplacement);
        } else {
            clean += text.substr(at, step.length);
        }
        at += step.length;
    }
    return clean;
}

std::string cellOf(const Json& value) {
    if (!value.is_string()) {
        return value.dump();
    }
    std::string cell = withoutControls(value.get_ref<const std::string&>());
    if (!cell.empty() && std::string_view("=+-@'\t\r\n").find(cell.front()) != std::string_view::npos) {
        cell.insert(0, 1, '\'');
    }
    if (cell.find_first_of(",;\t\"\r\n") == std::string::npos) {
        return cell;
    }
    for (std::size_t at = cell.find('"'); at != std::string::npos; at = cell.find('"', at + 2)) {
        cell.insert(at, 1, '"');
    }
    return '"' + cell + '"';
}

/// Builds a row: `makeCell` gives a cell for each member's name and value.
template <typename MakeCell>
std::string rowOf(const Json& item, const Json& occurrence, MakeCell makeCell) {
    std::string row;
    const char* between = "";
    for (const Json* const members : {&item, &occurrence}) {
        for (const auto& [name, value] : members->items()) {
            if (!value.is_array() && (members != &item || !isRepeated(item, name))) {
                row += between + makeCell(name, value);
                between = ",";
            }
        }
    }
    return row + "\r\n";
}

std::string valueCell(const std::string& /*name*/, const Json& value) {
    return cellOf(value);
}

}  // namespace

std::string csvHeader(ListName list) {
    const Json item = emptyItem(list);
    const Json occurrence = item.contains(kOccurrences) ? item[kOccurrences][0] : Json::object();
    return rowOf(item, occurrence, [](const std::string& name, const Json& /*value*/) { return name; });
}

std::string csvRows(ListName list, const Json& item) {
    if (!item.contains(kOccurrences)) {
        return rowOf(item, Json::object(), valueCell);
    }
    const Json none = emptyItem(list)[kOccurrences];
    const Json& occurrences = item[kOccurrences].empty() ? none : item[kOccurrences];
    std::string rows;
    for (const Json& occurrence : occurrences) {
        rows += rowOf(item, occurrence, valueCell);
    }
    return rows;
}

}  // namespace host
