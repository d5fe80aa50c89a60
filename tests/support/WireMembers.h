#pragma once

#include <regex>
#include <string>
#include <utility>
#include <vector>

namespace journaltest {

/// The XML of members in short, each after a space:
///     connection/7/2001    a connection: its call and its device
///     callingDevice:4711   a device identifier
///     cause=newCall        a text
///     moved/3/1/4711/TEXT  an entry of a connection list: new call, old call, number, endpoint
/// Text that begins with "<" is unchanged, "_" is a space, and the brackets of N<4711>Ann need no escape.
inline std::string membersOf(std::string text) {
    static const std::vector<std::pair<std::regex, std::string>> kinds = {
        {std::regex("N<([^>]*)>"), "N&lt;$1&gt;"},
        {std::regex(" moved/(\\w+)/(\\w+)/(\\w+)/(\\S+)"),
         "<connectionListItem> newConnection/$1/$3 oldConnection/$2/$3"
         " <endpoint> deviceID=$4</endpoint></connectionListItem>"},
        {std::regex(" (\\w+)/([^/ ]*)/([^< ]*)"), "<$1> callID=$2 deviceID=$3</$1>"},
        {std::regex(" (\\w+):([^< ]*)"), "<$1> deviceIdentifier=$2</$1>"},
        {std::regex(" (\\w+)=([^< ]*)"), "<$1>$2</$1>"},
        {std::regex("_"), " "},
    };
    for (const auto& [kind, xml] : kinds) {
        text = std::regex_replace(text, kind, xml);
    }
    return text;
}

}  // namespace journaltest
