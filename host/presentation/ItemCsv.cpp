#include "host/presentation/ItemCsv.h"

#include <nlohmann/json.hpp>
#include <string>
#include <type_traits>
#include <vector>

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

struct Column {
    std::string name;
    /// Of the occurrence, else of the item.
    bool ofCall = false;
};

/// The columns of a list: members that the API adds to an item or a call are not among them.
std::vector<Column> columnsOf(ListName list) {
    const Json item = emptyItem(list);
    const bool hasCalls = item.contains(kOccurrences);
    std::vector<Column> columns;
    for (const auto& [name, value] : item.items()) {
        // An item repeats number and time of its newest occurrence, and its number as people write it.
        const bool isRepeated = (hasCalls && (name == "number" || name == "time")) || name == "numberText";
        if (!value.is_array() && !isRepeated) {
            columns.push_back({name, false});
        }
    }
    if (hasCalls) {
        for (const auto& [name, value] : item[kOccurrences][0].items()) {
            columns.push_back({name, true});
        }
    }
    return columns;
}

std::string cellOf(const Json& members, const std::string& name) {
    const auto value = members.find(name);
    if (value == members.end() || value->is_null()) {
        return {};
    }
    return value->is_string() ? csvCell(value->get_ref<const std::string&>()) : value->dump();
}

/// Builds a row: `makeCell` gives the cell of a column.
template <typename MakeCell>
std::string rowOf(const std::vector<Column>& columns, MakeCell makeCell) {
    std::string row;
    const char* between = "";
    for (const Column& column : columns) {
        row += between + makeCell(column);
        between = ",";
    }
    return row + "\r\n";
}

std::string rowsOf(const std::vector<Column>& columns, const Json& item) {
    static const Json kNoCall = Json::array({Json::object()});
    const auto found = item.find(kOccurrences);
    std::string rows;
    for (const Json& call : found == item.end() || found->empty() ? kNoCall : *found) {
        rows += rowOf(columns, [&item, &call](const Column& column) {
            return cellOf(column.ofCall ? call : item, column.name);
        });
    }
    return rows;
}

}  // namespace

std::string csvRows(ListName list, const Json& item) {
    return rowsOf(columnsOf(list), item);
}

std::string csvText(ListName list, const Json& items) {
    const std::vector<Column> columns = columnsOf(list);
    std::string text = rowOf(columns, [](const Column& column) { return column.name; });
    for (const Json& item : items) {
        text += rowsOf(columns, item);
    }
    return text;
}

}  // namespace host
