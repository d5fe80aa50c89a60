#include "apps/calljournal/command-line/Confirmation.h"

#include <unistd.h>

#include <CLI/CLI.hpp>
#include <iostream>

#include "apps/calljournal/output/ErrorOutput.h"
#include "apps/calljournal/output/ExitStatus.h"
#include "host/presentation/PlainText.h"

namespace calljournal {

void Confirmation::addTo(CLI::App& app) {
    app.add_flag("-y,--yes", m_yes, "do not ask before what cannot be undone");
}

bool Confirmation::isGiven(const std::string& question) const {
    if (m_yes || ::isatty(STDIN_FILENO) == 0 || ::isatty(STDOUT_FILENO) == 0) {
        return true;
    }
    std::cout << host::printable(question) << " [y/N] " << std::flush;
    std::string reply;
    std::getline(std::cin, reply);
    return reply == "y" || reply == "Y" || reply == "yes";
}

int Confirmation::refused() {
    printError("nothing is changed");
    return eFailed;
}

}  // namespace calljournal
