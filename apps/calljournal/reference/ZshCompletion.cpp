#include <string_view>

#include "apps/calljournal/reference/Completions.h"

namespace calljournal {
namespace {

/// Text between single quotes within an argument of `_arguments`.
std::string escaped(std::string_view text) {
    std::string result;
    for (const char each : text) {
        if (each == '\'') {
            result += "'\\''";
            continue;
        }
        if (std::string_view("[]:\\").find(each) != std::string_view::npos) {
            result += '\\';
        }
        result += each;
    }
    return result;
}

/// ":message:action".
std::string value(const OptionText& option) {
    std::string action;
    if (option.takesFile()) {
        action = "_files";
    } else if (option.takesDirectory()) {
        action = "_files -/";
    } else if (const auto words = option.words(); !words.empty()) {
        for (const std::string& word : words) {
            action += (action.empty() ? "(" : " ") + word;
        }
        action += ")";
    }
    return ":" + escaped(option.value) + ":" + action;
}

std::string functionName(const std::string& path) {
    std::string name = "_calljournal" + (path.empty() ? std::string() : "_" + path);
    for (char& each : name) {
        each = each == ' ' || each == '-' ? '_' : each;
    }
    return name;
}

std::string argumentList(const CommandText& command) {
    std::string text;
    for (const OptionText& option : command.options) {
        for (const std::string& name : option.names) {
            text += " \\\n        '" + std::string(option.isRepeated ? "*" : "") + name + "[" +
                    escaped(option.help) + "]" + (option.value.empty() ? "" : value(option)) + "'";
        }
    }
    for (const OptionText& argument : command.arguments) {
        text += " \\\n        '" +
                std::string(argument.isRepeated   ? "*"
                            : argument.isRequired ? ""
                                                  : ":") +
                value(argument) + "'";
    }
    return text;
}

/// A function for a command with commands below it: completes their names, and calls their functions.
std::string chooser(const CommandText& command) {
    std::string text =
        "    local context state state_descr line\n    typeset -A opt_args\n    _arguments -C" +
        argumentList(command) +
        " \\\n        '1:command:->command' '*::argument:->below'\n    case $state in\n"
        "        command)\n            local -a commands=(\n";
    std::string calls;
    for (const CommandText& below : command.commands) {
        text += "                '" + below.name() + ":" + escaped(below.help) + "'\n";
        calls += "                " + below.name() + ") " + functionName(below.path) + " ;;\n";
    }
    return text +
           "            )\n            _describe command commands\n            ;;\n        below)\n"
           "            case $words[1] in\n" +
           calls + "            esac\n            ;;\n    esac\n";
}

}  // namespace

std::string zshCompletion(const CommandText& program) {
    std::string text = "#compdef calljournal\n# Completes the command line of calljournal in zsh.\n";
    for (const CommandText* command : withCommandsBelow(program)) {
        text += "\n" + functionName(command->path) + "() {\n" +
                (command->commands.empty() ? "    _arguments" + argumentList(*command) + "\n"
                                           : chooser(*command)) +
                "}\n";
    }
    return text + "\n_calljournal \"$@\"\n";
}

}  // namespace calljournal
