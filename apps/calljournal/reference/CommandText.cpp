#include "apps/calljournal/reference/CommandText.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cctype>

#include "apps/calljournal/command-line/CommandLine.h"

namespace calljournal {
namespace {

std::vector<std::string> parts(const std::string& text, char separator) {
    std::vector<std::string> found;
    std::size_t begin = 0;
    for (std::size_t end = 0; end != std::string::npos; begin = end + 1) {
        end = text.find(separator, begin);
        found.push_back(text.substr(begin, end - begin));
    }
    return found;
}

OptionText textOf(const CLI::Option& option) {
    OptionText text;
    text.help = option.get_description();
    text.isRequired = option.get_required();
    text.isRepeated = option.get_items_expected_max() > 1;
    if (option.get_type_size_max() > 0) {
        text.value = option.get_type_name();
        // The library appends the names of its checks.
        for (const char* check : {":{", ":value in", ":FILE"}) {
            text.value.resize(std::min(text.value.find(check), text.value.size()));
        }
    }
    if (option.get_positional()) {
        text.names = {option.get_name(true)};
        text.value = text.value.empty() ? text.names.front() : text.value;
        return text;
    }
    for (const std::string& name : option.get_lnames()) {
        text.names.push_back("--" + name);
    }
    for (const std::string& name : option.get_snames()) {
        text.names.push_back("-" + name);
    }
    for (const CLI::Option* other : option.get_excludes()) {
        text.excludes.push_back(other->get_name());
    }
    std::sort(text.excludes.begin(), text.excludes.end());
    return text;
}

CommandText textOf(const CLI::App& app, const std::string& path, const std::vector<OptionText>& inherited) {
    CommandText text;
    text.path = path;
    text.help = app.get_description();
    for (const CLI::Option* option : app.get_options([](const CLI::Option*) { return true; })) {
        (option->get_positional() ? text.arguments : text.options).push_back(textOf(*option));
    }
    std::vector<OptionText> forBelow;
    for (const OptionText& option : text.options) {
        if (!path.empty() && option.names.front() != "--help") {
            forBelow.push_back(option);
        }
    }
    text.options.insert(text.options.end(), inherited.begin(), inherited.end());
    for (const CLI::App* below : app.get_subcommands([](const CLI::App*) { return true; })) {
        text.commands.push_back(
            textOf(*below, path.empty() ? below->get_name() : path + " " + below->get_name(), forBelow));
    }
    return text;
}

}  // namespace

std::vector<std::string> OptionText::words() const {
    if (value == "LIST") {
        return {"missed", "dialled", "received", "forwarded", "callbacks"};
    }
    const bool isChoice =
        value.find('|') != std::string::npos &&
        std::none_of(value.begin(), value.end(), [](unsigned char each) { return std::isupper(each); });
    return isChoice ? parts(value, '|') : std::vector<std::string>();
}

CommandText readProgramText() {
    CommandText text;
    readCommandLine([&text](const CLI::App& app) { text = textOf(app, "", {}); });
    return text;
}

std::vector<const CommandText*> withCommandsBelow(const CommandText& command) {
    std::vector<const CommandText*> all{&command};
    for (const CommandText& each : command.commands) {
        const auto below = withCommandsBelow(each);
        all.insert(all.end(), below.begin(), below.end());
    }
    return all;
}

}  // namespace calljournal
