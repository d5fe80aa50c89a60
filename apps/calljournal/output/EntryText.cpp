#include "apps/calljournal/output/EntryText.h"

#include <array>
#include <nlohmann/json.hpp>
#include <utility>
#include <vector>

#include "apps/calljournal/output/JsonText.h"
#include "apps/calljournal/output/TextTable.h"
#include "host/presentation/PlainText.h"

namespace calljournal {
namespace {

using Json = nlohmann::ordered_json;
using Member = std::pair<const char*, const char*>;

// The members of an item and of an occurrence with their titles, in the order of the text. The name and the
// list precede them.
constexpr std::array<Member, 12> kItemMembers{{{"number", "Number"},
                                               {"calls", "Calls"},
                                               {"numberType", "Kind of number"},
                                               {"time", "Time"},
                                               {"type", "Asked for"},
                                               {"state", "State"},
                                               {"deviceId", "Device"},
                                               {"picture", "Picture"},
                                               {"viewed", "Viewed"},
                                               {"groupBy", "Gathered by"},
                                               {"uniqueId", "Unique id"},
                                               {"entryId", "Entry id"}}};
constexpr std::array<Member, 11> kCallMembers{{{"time", "TIME"},
                                               {"number", "NUMBER"},
                                               {"connectedNumber", "CONNECTED"},
                                               {"substituteNumber", "REACHED"},
                                               {"featureAccessCode", "CODE"},
                                               {"forwardedToNumber", "FORWARDED TO"},
                                               {"duration", "DURATION"},
                                               {"redirectingNumber", "REDIRECTED BY"},
                                               {"redirectingName", "NAME"},
                                               {"lineKey", "LINE"},
                                               {"completedElsewhere", "ELSEWHERE"}}};
// The columns that are cut first: names, then numbers.
constexpr std::array<std::size_t, 7> kCut{8, 9, 7, 5, 3, 2, 1};

/// The text of a member; empty if the object has no such member.
std::string shown(const Json& object, const std::string& member, const char* forFalse) {
    const auto found = object.find(member);
    if (found == object.end()) {
        return {};
    }
    if (found->is_boolean()) {
        return found->get<bool>() ? "yes" : forFalse;
    }
    const std::string text = textIn(object, member);
    return member == "time" ? host::localTime(text) : text;
}

std::string callTable(const Json& occurrences, std::size_t width) {
    std::vector<std::string> titles;
    titles.reserve(std::size(kCallMembers));
    for (const Member& member : kCallMembers) {
        titles.emplace_back(member.second);
    }
    std::vector<TableRow> rows;
    for (const Json& occurrence : occurrences) {
        TableRow row;
        for (const Member& member : kCallMembers) {
            row.cells.push_back(shown(occurrence, member.first, ""));
        }
        rows.push_back(std::move(row));
    }
    return tableText(titles, rows, {width, {kCut.begin(), kCut.end()}});
}

}  // namespace

std::string entryText(ListName list, const Json& item, std::size_t width) {
    const std::string name = nameIn(item);
    std::string text = (name.empty() ? "unknown" : host::printable(name)) + ", " + host::callWord(list) +
                       (item.value("calls", 1) > 1 ? "s" : "") + "\n";
    const std::string filed = host::fullName(textIn(item, "firstName"), textIn(item, "surname"));
    if (filed != name) {
        text += "  " + host::padded("Filed as", 16) + host::printable(filed) + "\n";
    }
    for (const auto& [member, title] : kItemMembers) {
        const std::string value = shown(item, member, "no");
        if (!value.empty()) {
            text += "  " + host::padded(title, 16) + host::printable(value) + "\n";
        }
    }
    if (item.contains("occurrences")) {
        text += "\n" + callTable(item["occurrences"], width);
    }
    return text;
}

}  // namespace calljournal
