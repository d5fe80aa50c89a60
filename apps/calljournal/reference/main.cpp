// calljournal-reference SOURCE DIRECTORY: writes the manual pages and the completions of calljournal to
// DIRECTORY, as the folders of /usr/share. SOURCE is packaging/man: the overview calljournal.1, and
// COMMAND.mdoc with what an option's own text cannot explain. The build runs it.

#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <stdexcept>
#include <string>

#include "apps/calljournal/reference/CommandText.h"
#include "apps/calljournal/reference/Completions.h"
#include "apps/calljournal/reference/ManualPages.h"

namespace {

namespace fs = std::filesystem;

std::string contents(const fs::path& file) {
    std::ifstream input(file, std::ios::binary);
    if (!input) {
        throw std::runtime_error("cannot read " + file.string());
    }
    return {std::istreambuf_iterator<char>(input), {}};
}

void write(const fs::path& file, const std::string& text) {
    fs::create_directories(file.parent_path());
    std::ofstream output(file, std::ios::binary);
    if (!(output << text).flush()) {
        throw std::runtime_error("cannot write " + file.string());
    }
}

void writeAll(const fs::path& source, const fs::path& directory) {
    const calljournal::CommandText program = calljournal::readProgramText();
    const std::string overview = contents(source / "calljournal.1");
    const fs::path pages = directory / "man/man1";
    fs::remove_all(pages);  // A command may have gone.
    write(pages / "calljournal.1", calljournal::overviewPage(program, overview));
    const std::string date = overview.substr(0, overview.find('\n') + 1);
    for (const calljournal::CommandText& command : program.commands) {
        const fs::path notes = source / (command.name() + ".mdoc");
        write(pages / ("calljournal-" + command.name() + ".1"),
              calljournal::commandPage(command, fs::exists(notes) ? contents(notes) : "", date));
    }
    write(directory / "bash-completion/completions/calljournal", calljournal::bashCompletion(program));
    write(directory / "zsh/vendor-completions/_calljournal", calljournal::zshCompletion(program));
    write(directory / "fish/vendor_completions.d/calljournal.fish", calljournal::fishCompletion(program));
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::cerr << "usage: calljournal-reference SOURCE DIRECTORY" << std::endl;
        return 2;
    }
    try {
        writeAll(argv[1], argv[2]);
        return 0;
    } catch (const std::exception& error) {
        std::cerr << "calljournal-reference: " << error.what() << std::endl;
        return 1;
    }
}
