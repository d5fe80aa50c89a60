#include <string_view>

#include "apps/calljournal/reference/Completions.h"

namespace calljournal {
namespace {

// The commands of the command line are its words that are no options, up to the number asked for.
constexpr const char* kBegin = R"(# Completes the command line of calljournal in fish.

# True if the command line is at the given command; with -x, and if no other word follows it.
function __calljournal_at
    argparse x -- $argv
    set -l words (commandline -opc)
    set -l found
    for word in $words[2..-1]
        string match -q -- '-*' $word; or set -a found $word
    end
    set -l length (count $argv)
    set -q _flag_x; and test (count $found) -ne $length; and return 1
    test $length -eq 0; or test "$found[1..$length]" = "$argv"
end

complete -c calljournal -f
)";

std::string quoted(std::string_view text) {
    std::string result = "'";
    for (const char each : text) {
        if (each == '\'' || each == '\\') {
            result += '\\';
        }
        result += each;
    }
    return result + "'";
}

std::string joined(const std::vector<std::string>& words) {
    std::string text;
    for (const std::string& word : words) {
        text += (text.empty() ? "" : " ") + word;
    }
    return text;
}

std::string valueOf(const OptionText& option) {
    if (option.takesFile()) {
        return " -r -F";
    }
    if (option.takesDirectory()) {
        return " -x -a '(__fish_complete_directories)'";
    }
    const auto words = option.words();
    return words.empty() ? " -x" : " -x -a " + quoted(joined(words));
}

std::string optionLine(const std::string& condition, const OptionText& option) {
    std::string line = "complete -c calljournal -n " + quoted(condition);
    for (const std::string& name : option.names) {
        line += name.starts_with("--") ? " -l " + name.substr(2) : " -s " + name.substr(1);
    }
    return line + (option.value.empty() ? "" : valueOf(option)) + " -d " + quoted(option.help) + "\n";
}

}  // namespace

std::string fishCompletion(const CommandText& program) {
    std::string text = kBegin;
    for (const CommandText* command : withCommandsBelow(program)) {
        const std::string path = command->path.empty() ? "" : " " + command->path;
        text += '\n';
        const std::string condition =
            std::string("__calljournal_at") + (command->commands.empty() ? "" : " -x") + path;
        for (const CommandText& below : command->commands) {
            text += "complete -c calljournal -n " + quoted(condition) + " -a " + below.name() + " -d " +
                    quoted(below.help) + "\n";
        }
        for (const OptionText& option : command->options) {
            text += optionLine(condition, option);
        }
        if (command->arguments.empty()) {
            continue;
        }
        const OptionText& first = command->arguments.front();
        if (const auto words = first.words(); !words.empty()) {
            text += "complete -c calljournal -n " + quoted("__calljournal_at -x" + path) + " -a " +
                    quoted(joined(words)) + "\n";
        } else if (first.takesFile()) {
            text += "complete -c calljournal -n " + quoted(condition) + " -F\n";
        }
    }
    return text;
}

}  // namespace calljournal
