#include "apps/calljournal/command-line/ListOptions.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>
#include <functional>

#include "apps/calljournal/command-line/Command.h"
#include "apps/calljournal/output/ErrorOutput.h"
#include "host/presentation/PlainText.h"

namespace calljournal {
namespace {

std::string checkCount(const std::string& text) {
    std::size_t count = 0;
    const char* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, count);
    return error == std::errc() && rest == end && count > 0 ? std::string()
                                                            : text + " is not a number from 1 on";
}

std::string checkList(const std::string& text) {
    return listNamed(text) ? std::string()
                           : "there is no list " + text +
                                 "; the lists are missed, dialled, received, forwarded and callbacks";
}

std::string joined(const std::vector<std::string>& words, const char* separator, const char* last) {
    std::string text = words.front();
    for (std::size_t at = 1; at < words.size(); ++at) {
        text += (at + 1 < words.size() ? separator : last) + words[at];
    }
    return text;
}

}  // namespace

void addListOption(CLI::App& app, std::string& list, ListOption kind) {
    app.add_option("list", list, "missed, dialled, received, forwarded or callbacks")
        ->type_name("LIST")
        ->required(kind == ListOption::eRequired)
        ->check(std::function<std::string(const std::string&)>(&checkList));
}

void addLimitOption(CLI::App& app, std::size_t& limit, const std::string& help) {
    app.add_option("-n,--limit", limit, help)
        ->type_name("N")
        ->check(std::function<std::string(const std::string&)>(&checkCount));
}

void addFormatOption(CLI::App& app, std::string& format, const std::vector<std::string>& formats,
                     const std::string& help) {
    app.add_option("--format", format, help)
        ->type_name(joined(formats, "|", "|"))
        ->required()
        ->check(std::function<std::string(const std::string&)>([formats](const std::string& text) {
            return std::find(formats.begin(), formats.end(), text) != formats.end()
                       ? std::string()
                       : "there is no format " + text + "; it is " + joined(formats, ", ", " or ");
        }));
}

void addEntriesOption(CLI::App& app, std::vector<std::string>& entries, const std::string& help) {
    app.add_option("entries", entries, help)->type_name("ENTRY");
}

void printUnknown(const std::string& entryId, ListName list, const CommonOptions& common) {
    const std::string word(wordOf(list));
    printError("there is no entry " + host::printable(entryId) + " in the list " + word + "; `" +
               common.commandForUser("list " + word + " --ids") + "` prints the ids of the entries");
}

}  // namespace calljournal
