#include "apps/calljournal/output/UsageErrorText.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstddef>
#include <numeric>
#include <vector>

#include "host/presentation/PlainText.h"

namespace calljournal {
namespace {

/// The Levenshtein distance of two words.
std::size_t distance(const std::string& left, const std::string& right) {
    std::vector<std::size_t> row(right.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 1; i <= left.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = i;
        for (std::size_t j = 1; j <= right.size(); ++j) {
            const std::size_t replaced = diagonal + (left[i - 1] == right[j - 1] ? 0 : 1);
            diagonal = row[j];
            row[j] = std::min({row[j - 1] + 1, row[j] + 1, replaced});
        }
    }
    return row.back();
}

/// "; did you mean X?"; empty if no word is similar.
std::string suggestion(const std::string& word, const std::vector<std::string>& known) {
    std::string best;
    const std::size_t most = std::max<std::size_t>(word.size() / 3, 1);
    std::size_t least = std::string::npos;
    for (const std::string& each : known) {
        const std::size_t far = distance(word, each);
        if (far < least && (far <= most || each.rfind(word, 0) == 0)) {
            least = far;
            best = each;
        }
    }
    return best.empty() ? std::string() : "; did you mean " + best + "?";
}

std::vector<std::string> commandsOf(const CLI::App& app) {
    std::vector<std::string> names;
    for (const CLI::App* const sub : app.get_subcommands([](const CLI::App*) { return true; })) {
        names.push_back(sub->get_name());
    }
    return names;
}

std::vector<std::string> optionsOf(const CLI::App& app) {
    std::vector<std::string> names;
    for (const CLI::Option* const option : app.get_options()) {
        for (const std::string& name : option->get_lnames()) {
            names.push_back("--" + name);
        }
    }
    if (app.get_fallthrough() && app.get_parent() != nullptr) {
        const std::vector<std::string> more = optionsOf(*app.get_parent());
        names.insert(names.end(), more.begin(), more.end());
    }
    return names;
}

std::string joined(const std::vector<std::string>& words) {
    std::string text;
    for (std::size_t at = 0; at < words.size(); ++at) {
        text += (at == 0 ? "" : at + 1 == words.size() ? " or " : ", ") + words[at];
    }
    return text;
}

/// The innermost command of the command line.
const CLI::App& innermost(const CLI::App& app) {
    const std::vector<CLI::App*> chosen = app.get_subcommands();
    return chosen.empty() ? app : innermost(*chosen.back());
}

std::string fullNameOf(const CLI::App& app) {
    return app.get_parent() == nullptr ? app.get_name()
                                       : fullNameOf(*app.get_parent()) + " " + app.get_name();
}

/// The first unknown option of the command line, else the first unknown word. Where a command is expected,
/// the word before the options, which may be those of the command that it was to be.
std::string firstUnknown(const CLI::App& app, bool expectsCommand) {
    const std::vector<std::string> rest = app.remaining(true);
    if (expectsCommand && !rest.empty()) {
        return rest.front();
    }
    const auto option = std::find_if(rest.begin(), rest.end(),
                                     [](const std::string& word) { return word.rfind('-', 0) == 0; });
    if (option != rest.end()) {
        return *option;
    }
    return rest.empty() ? std::string() : rest.front();
}

/// The fault of an option's or an argument's value. The error's text begins with the name of the option.
std::string valueFault(const CLI::App& command, const CLI::ParseError& error) {
    const std::string text = error.what();
    const std::size_t colon = text.find(": ");
    const std::size_t end = text.find(" is required");
    const std::string name = text.substr(0, std::min(colon, end));
    const CLI::Option* const option = command.get_option_no_throw(name);
    const bool isArgument = option != nullptr && option->get_positional();
    const std::string shown = isArgument ? option->get_type_name() : name;
    if (dynamic_cast<const CLI::RequiredError*>(&error) != nullptr) {
        return shown + " is missing";
    }
    if (dynamic_cast<const CLI::ArgumentMismatch*>(&error) != nullptr) {
        return shown + " takes one value";
    }
    return host::printable(isArgument && colon != std::string::npos ? text.substr(colon + 2) : text);
}

std::string missingCommand(const CLI::App& app) {
    return "a command is missing: " + joined(commandsOf(app));
}

std::string faultOf(const CLI::App& app, const CLI::App& command, const CLI::ParseError& error) {
    const std::vector<std::string> commands = commandsOf(command);
    const std::string unknown = firstUnknown(app, !commands.empty());
    if (unknown.rfind('-', 0) == 0) {
        const std::string name = unknown.substr(0, unknown.find('='));
        return "there is no option " + host::printable(name) + suggestion(name, optionsOf(command));
    }
    if (!unknown.empty() && !commands.empty()) {
        return unknownCommandText(command, unknown);
    }
    if (!unknown.empty()) {
        return "unexpected argument " + host::printable(unknown);
    }
    if (!commands.empty()) {
        return missingCommand(command);
    }
    return valueFault(command, error);
}

}  // namespace

std::string missingCommandText(const CLI::App& app) {
    return app.get_name() + ": " + missingCommand(app) + " (`" + app.get_name() + " --help` shows more)";
}

std::string unknownCommandText(const CLI::App& app, const std::string& word) {
    return "there is no command " + host::printable(word) + suggestion(word, commandsOf(app));
}

std::string usageErrorText(const CLI::App& app, const CLI::ParseError& error) {
    const CLI::App& command = innermost(app);
    const std::string name = fullNameOf(command);
    return name + ": " + faultOf(app, command, error) + " (`" + name + " --help` shows more)";
}

}  // namespace calljournal
