#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace calljournal {

/// An option or a positional argument of a command.
struct OptionText {
    /// "--help" and "-h"; for an argument its name.
    std::vector<std::string> names;
    /// The value as the help shows it, "FILE" or "json|csv"; empty for a flag.
    std::string value;
    std::string help;
    bool isRequired = false;
    bool isRepeated = false;
    /// The options that it excludes.
    std::vector<std::string> excludes;

    /// The words of a value that is one of several: {"json", "csv"}; otherwise empty.
    [[nodiscard]] std::vector<std::string> words() const;
    [[nodiscard]] bool takesFile() const { return value.starts_with("FILE"); }
    [[nodiscard]] bool takesDirectory() const { return value == "DIR"; }
};

/// A command as the user sees it: the source of the manual pages and of the completions.
struct CommandText {
    /// With the commands above: "contacts add"; empty for the program.
    std::string path;
    std::string help;
    /// Also those of the commands above that it takes.
    std::vector<OptionText> options;
    std::vector<OptionText> arguments;
    std::vector<CommandText> commands;

    [[nodiscard]] std::string name() const { return path.substr(path.rfind(' ') + 1); }
};

/// The program's commands. Call once, on the main thread.
[[nodiscard]] CommandText readProgramText();

/// The command and all below it, the command first.
[[nodiscard]] std::vector<const CommandText*> withCommandsBelow(const CommandText& command);

}  // namespace calljournal
