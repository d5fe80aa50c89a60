#include "apps/calljournal/reference/ManualPages.h"

#include <algorithm>
#include <cctype>
#include <initializer_list>
#include <string_view>
#include <utility>

namespace calljournal {
namespace {

void replaceAll(std::string& text, std::string_view from, std::string_view to) {
    for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size())) {
        text.replace(at, from.size(), to);
    }
}

/// A text line of mdoc that shows `text` as it is.
std::string textLine(std::string text) {
    replaceAll(text, "\\", "\\e");
    if (text.starts_with('.') || text.starts_with('\'')) {
        text.insert(0, "\\&");
    }
    return text + '\n';
}

/// "prints a list" -> "Prints a list."
std::string sentence(std::string text) {
    text.front() = static_cast<char>(std::toupper(static_cast<unsigned char>(text.front())));
    return textLine(text + (text.ends_with('.') ? "" : "."));
}

/// An argument of a macro: "KEY=VALUE,..." has no white space; a bar would be a delimiter.
std::string macroWord(std::string text) {
    replaceAll(text, "|", "\\*(Ba");
    return text;
}

std::string argumentLine(const OptionText& argument) {
    std::string line = argument.isRequired ? "." : ".Op ";
    line += "Ar ";
    line += macroWord(argument.value.empty() ? argument.names.front() : argument.value);
    return line + (argument.isRepeated ? " ...\n" : "\n");
}

/// Fl with a leading second dash for long names.
std::string flag(const std::string& name) {
    return name.starts_with("--") ? "Fl Fl " + name.substr(2) : "Fl " + name.substr(1);
}

std::string optionItem(const OptionText& option) {
    std::string item = ".It ";
    for (const std::string& name : option.names) {
        item += (&name == &option.names.front() ? "" : " , ") + flag(name);
    }
    item += option.value.empty() ? "\n" : " Ar " + macroWord(option.value) + "\n";
    item += sentence(option.help);
    if (option.isRequired) {
        item += "Required.\n";
    }
    if (option.isRepeated) {
        item += "May be repeated.\n";
    }
    if (!option.excludes.empty()) {
        std::string others;
        for (const std::string& each : option.excludes) {
            others += (others.empty() ? "" : ", ") + each;
        }
        item += sentence("not with " + others);
    }
    return item;
}

std::string synopsis(const CommandText& command) {
    std::string text = ".Nm calljournal Cm " + command.path + "\n";
    if (!command.commands.empty()) {
        return text + ".Ar command\n.Op Ar options\n";
    }
    text += ".Op Ar options\n";
    for (const OptionText& argument : command.arguments) {
        text += argumentLine(argument);
    }
    return text;
}

std::string argumentsAndOptions(const CommandText& command) {
    std::string text = ".Bl -tag -width Ds\n";
    for (const OptionText& argument : command.arguments) {
        text += ".It Ar " + macroWord(argument.value) + (argument.isRepeated ? " ...\n" : "\n");
        text += sentence(argument.help);
    }
    for (const OptionText& option : command.options) {
        text += optionItem(option);
    }
    return text + ".El\n";
}

std::string upper(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char each) { return static_cast<char>(std::toupper(each)); });
    return text;
}

}  // namespace

std::string overviewPage(const CommandText& program, const std::string& overview) {
    std::string list = ".Bl -tag -width settings\n";
    for (const CommandText& command : program.commands) {
        list += ".It Xr calljournal-" + command.name() + " 1\n" + sentence(command.help);
    }
    list += ".El\n";
    list += ".Pp\nThe program itself takes these options:\n" + argumentsAndOptions(program);
    std::string text = overview;
    replaceAll(text, ".\\\" COMMANDS\n", list);
    return text;
}

std::string commandPage(const CommandText& command, const std::string& notes, const std::string& date) {
    const std::string page = "calljournal-" + command.name();
    std::string text = date + ".Dt " + upper(page) + " 1\n.Os\n.Sh NAME\n.Nm " + page + "\n.Nd " +
                       textLine(command.help) + ".Sh SYNOPSIS\n";
    for (const CommandText* each : withCommandsBelow(command)) {
        if (each->commands.empty()) {
            text += synopsis(*each);
        }
    }
    text += ".Sh DESCRIPTION\n" + sentence(command.help) + (notes.empty() ? "" : ".Pp\n" + notes);
    for (const CommandText* each : withCommandsBelow(command)) {
        if (!command.commands.empty()) {
            if (each == &command) {
                continue;
            }
            text += ".Ss " + each->name() + "\n" + sentence(each->help);
        } else {
            text += ".Pp\n";
        }
        text += argumentsAndOptions(*each);
    }
    return text + ".Sh EXIT STATUS\n0 done, 1 failed, 2 wrong usage.\n.Sh SEE ALSO\n.Xr calljournal 1\n";
}

}  // namespace calljournal
