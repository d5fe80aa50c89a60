#include <map>

#include "apps/calljournal/reference/Completions.h"

namespace calljournal {
namespace {

constexpr const char* kBegin = R"(# Completes the command line of calljournal in bash.

)";

// The tables above it print the candidates. $1 is the command with its sub-command.
constexpr const char* kEnd = R"(
_calljournal() {
    local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]}
    local command='' arguments=0 isValue='' words='' each at
    for ((at = 1; at < COMP_CWORD; at++)); do
        each=${COMP_WORDS[at]}
        if [[ -n $isValue ]]; then
            isValue=''
        elif [[ $each == -* ]]; then
            [[ -n $(_calljournal_values "$command" "$each") ]] && isValue=1
        elif [[ " $(_calljournal_commands "$command") " == *" $each "* ]]; then
            command=${command:+$command }$each
        else
            ((++arguments))
        fi
    done
    if [[ -n $isValue ]]; then
        words=$(_calljournal_values "$command" "$before")
    elif [[ $word == -* ]]; then
        words=$(_calljournal_options "$command")
    else
        words=$(_calljournal_commands "$command")
        words=${words:-$(_calljournal_arguments "$command" "$arguments")}
    fi
    case $words in
        :file) mapfile -t COMPREPLY < <(compgen -f -- "$word") ;;
        :directory) mapfile -t COMPREPLY < <(compgen -d -- "$word") ;;
        :text | '') COMPREPLY=() ;;
        *) mapfile -t COMPREPLY < <(compgen -W "$words" -- "$word") ;;
    esac
}

complete -o filenames -F _calljournal calljournal
)";

std::string candidates(const OptionText& option) {
    if (option.takesFile()) {
        return ":file";
    }
    if (option.takesDirectory()) {
        return ":directory";
    }
    std::string text;
    for (const std::string& word : option.words()) {
        text += (text.empty() ? "" : " ") + word;
    }
    return text.empty() ? ":text" : text;
}

/// A shell function that prints the words of the first row whose pattern matches its arguments.
std::string table(const std::string& name, const std::string& key,
                  const std::map<std::string, std::string>& rows) {
    std::string text = name + "() {\n    case \"" + key + "\" in\n";
    for (const auto& [pattern, words] : rows) {
        text += "        '" + pattern + "') echo '" + words + "' ;;\n";
    }
    return text + "    esac\n}\n";
}

}  // namespace

std::string bashCompletion(const CommandText& program) {
    std::map<std::string, std::string> commands;
    std::map<std::string, std::string> options;
    std::map<std::string, std::string> values;
    std::map<std::string, std::string> arguments;
    const auto add = [](std::string& words, const std::string& word) {
        words += (words.empty() ? "" : " ") + word;
    };
    for (const CommandText* command : withCommandsBelow(program)) {
        for (const CommandText& below : command->commands) {
            add(commands[command->path], below.name());
        }
        for (const OptionText& option : command->options) {
            add(options[command->path], option.names.front());
            if (!option.value.empty()) {
                values[command->path + " " + option.names.front()] = candidates(option);
            }
        }
        for (std::size_t at = 0; at < command->arguments.size(); ++at) {
            arguments[command->path + " " + std::to_string(at)] = candidates(command->arguments[at]);
        }
    }
    return kBegin + table("_calljournal_commands", "$1", commands) +
           table("_calljournal_options", "$1", options) + table("_calljournal_values", "$1 $2", values) +
           table("_calljournal_arguments", "$1 $2", arguments) + kEnd;
}

}  // namespace calljournal
