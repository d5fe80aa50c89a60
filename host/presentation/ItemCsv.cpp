#include "host/presentation/ItemCsv.h"

#include <nlohmann/json.hpp>
#include <type_traits>

#include "host/presentation/ItemJson.h"
#include "host/text-files/CsvCell.h"

namespace host {
namespace {

using Json = nlohmann::ordered_json;

constexpr const char* kOccurrences = "occurrences";

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

std::string cellOf(const Json& value) {
    if (!value.is_string()) {
        return value.dump();
    }
    return csvCell(value.get_ref<const std::string&>());
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
