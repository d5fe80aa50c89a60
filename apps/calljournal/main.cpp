#include <csignal>

#include "apps/calljournal/CommandLine.h"

int main(int argc, char** argv) {
    // A file that reaches the size limit of the process is then as a full disk, and a reader that has gone is
    // a failed write.
    std::signal(SIGXFSZ, SIG_IGN);
    std::signal(SIGPIPE, SIG_IGN);
    return calljournal::runCommandLine(argc, argv);
}
