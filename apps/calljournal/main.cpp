#include <fcntl.h>
#include <unistd.h>

#include <csignal>

#include "apps/calljournal/command-line/CommandLine.h"
#include "host/limits/UnusedMemory.h"

namespace {

/// Opens the standard streams that the caller has closed, so that no file or socket gets their numbers and
/// the texts that are for them. What is written to the standard output then fails.
void openClosedStreams() {
    for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream) {
        if (::fcntl(stream, F_GETFD) < 0) {
            static_cast<void>(::open("/dev/null", stream == STDERR_FILENO ? O_WRONLY : O_RDONLY));
        }
    }
}

}  // namespace

int main(int argc, char** argv) {
    openClosedStreams();
    host::limitUnusedMemory();
    // A file that reaches the size limit of the process is then as a full disk, and a reader that has gone is
    // a failed write.
    std::signal(SIGXFSZ, SIG_IGN);
    std::signal(SIGPIPE, SIG_IGN);
    return calljournal::runCommandLine(argc, argv);
}
