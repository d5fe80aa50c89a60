#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <set>
#include <string>

#include "tests/support/Table.h"

namespace journaltest {

/// Performs the operation and returns its result, true for one without a result.
///     one LIST ID [switch]    set LIST ID...    all LIST              delete; LIST is missed, dialled, ...
///     any ID...    any-switch ID...    everything                      delete over all lists
///     view ID...    age ID                                             of the missed list
template <typename Deletion, typename Updates>
bool perform(Deletion& deletion, Updates& updates, const std::string& text) {
    const auto words = split(text, ' ');
    const bool ofOneList = words[0] == "one" || words[0] == "set" || words[0] == "all";
    const std::size_t first = ofOneList ? 2 : 1;
    const std::set<std::string> ids(words.begin() + static_cast<std::ptrdiff_t>(first), words.end());
    const std::string id = words.size() > first ? words[first] : "";
    const std::map<std::string, std::function<bool()>> operations = {
        {"one missed", [&] { return deletion.deleteMissedCall(id, ids.contains("switch")); }},
        {"one dialled", [&] { return deletion.deleteDialledCall(id); }},
        {"one received", [&] { return deletion.deleteReceivedCall(id); }},
        {"one forwarded", [&] { return deletion.deleteForwardedCall(id); }},
        {"one callback", [&] { return deletion.deleteCallBack(id); }},
        {"set missed", [&] { return deletion.deleteMissedCallList(ids); }},
        {"set dialled", [&] { return deletion.deleteDialledCallList(ids); }},
        {"set received", [&] { return deletion.deleteReceivedCallList(ids); }},
        {"set forwarded", [&] { return deletion.deleteForwardedCallList(ids); }},
        {"set callback", [&] { return deletion.deleteCallBackList(ids); }},
        {"all missed", [&] { return deletion.deleteMissedCallList(); }},
        {"all dialled", [&] { return deletion.deleteDialledCallList(); }},
        {"all received", [&] { return deletion.deleteReceivedCallList(); }},
        {"all forwarded", [&] { return deletion.deleteForwardedCallList(); }},
        {"all callback", [&] { return deletion.deleteCallBackList(); }},
        {"any", [&] { return deletion.deleteCalls(ids, false); }},
        {"any-switch", [&] { return deletion.deleteCalls(ids, true); }},
        {"everything", [&] { return deletion.deleteAllCalls(); }},
        {"view", [&] { return updates.setMissedCallListAsViewed(ids); }},
        {"age", [&] { return updates.ageMissedCall(id), true; }},
    };
    return operations.at(ofOneList ? words[0] + " " + words.at(1) : words[0])();
}

}  // namespace journaltest
