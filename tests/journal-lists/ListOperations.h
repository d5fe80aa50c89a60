#pragma once

#include <map>
#include <set>
#include <string>

#include "src/JournalService/JournalLists.h"
#include "tests/support/Table.h"

namespace journaltest {

/// Does to the lists what `text` says and answers what they answer; an operation without an answer counts as true.
///     one LIST ID [switch]    set LIST ID...    all LIST                  delete; LIST is missed, dialled, ...
///     any ID...    any-switch ID...    everything                          delete over all lists
///     view ID...    age ID                                                 of the missed list
inline bool perform(journal::JournalLists& lists, const std::string& text) {
    using Ids = std::set<std::string>;
    using Lists = journal::JournalLists;
    static const std::map<std::string, bool (*)(Lists&, const std::string&, const Ids&)> kOperations = {
        {"one missed", [](Lists& on, const std::string& id,
                          const Ids& ids) { return on.deleteMissedCall(id, ids.contains("switch")); }},
        {"one dialled",
         [](Lists& on, const std::string& id, const Ids&) { return on.deleteDialledCall(id); }},
        {"one received",
         [](Lists& on, const std::string& id, const Ids&) { return on.deleteReceivedCall(id); }},
        {"one forwarded",
         [](Lists& on, const std::string& id, const Ids&) { return on.deleteForwardedCall(id); }},
        {"one callback", [](Lists& on, const std::string& id, const Ids&) { return on.deleteCallBack(id); }},
        {"set missed",
         [](Lists& on, const std::string&, const Ids& ids) { return on.deleteMissedCallList(ids); }},
        {"set dialled",
         [](Lists& on, const std::string&, const Ids& ids) { return on.deleteDialledCallList(ids); }},
        {"set received",
         [](Lists& on, const std::string&, const Ids& ids) { return on.deleteReceivedCallList(ids); }},
        {"set forwarded",
         [](Lists& on, const std::string&, const Ids& ids) { return on.deleteForwardedCallList(ids); }},
        {"set callback",
         [](Lists& on, const std::string&, const Ids& ids) { return on.deleteCallBackList(ids); }},
        {"all missed", [](Lists& on, const std::string&, const Ids&) { return on.deleteMissedCallList(); }},
        {"all dialled", [](Lists& on, const std::string&, const Ids&) { return on.deleteDialledCallList(); }},
        {"all received",
         [](Lists& on, const std::string&, const Ids&) { return on.deleteReceivedCallList(); }},
        {"all forwarded",
         [](Lists& on, const std::string&, const Ids&) { return on.deleteForwardedCallList(); }},
        {"all callback", [](Lists& on, const std::string&, const Ids&) { return on.deleteCallBackList(); }},
        {"any", [](Lists& on, const std::string&, const Ids& ids) { return on.deleteCalls(ids, false); }},
        {"any-switch",
         [](Lists& on, const std::string&, const Ids& ids) { return on.deleteCalls(ids, true); }},
        {"everything", [](Lists& on, const std::string&, const Ids&) { return on.deleteAllCalls(); }},
        {"view",
         [](Lists& on, const std::string&, const Ids& ids) { return on.setMissedCallListAsViewed(ids); }},
        {"age", [](Lists& on, const std::string& id, const Ids&) { return on.ageMissedCall(id), true; }},
    };
    const auto words = split(text, ' ');
    const bool ofOneList = words.at(0) == "one" || words[0] == "set" || words[0] == "all";
    const std::string what = ofOneList ? words[0] + " " + words.at(1) : words[0];
    const std::size_t first = ofOneList ? 2 : 1;
    const Ids ids(words.begin() + static_cast<std::ptrdiff_t>(first), words.end());
    return kOperations.at(what)(lists, words.size() > first ? words[first] : std::string(), ids);
}

}  // namespace journaltest
