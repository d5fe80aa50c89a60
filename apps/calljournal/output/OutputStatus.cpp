#include "apps/calljournal/output/OutputStatus.h"

#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <iostream>
#include <string>
#include <system_error>

#include "apps/calljournal/output/ErrorOutput.h"
#include "apps/calljournal/output/ExitStatus.h"

namespace calljournal {

bool outputHasReader() {
    pollfd output{STDOUT_FILENO, 0, 0};
    return ::poll(&output, 1, 0) <= 0 || (output.revents & POLLERR) == 0;
}

int statusOfOutput(bool succeeded) {
    const bool wasGood = std::cout.good();
    errno = 0;
    if (std::cout.flush().good()) {
        return succeeded ? eDone : eFailed;
    }
    if (!outputHasReader()) {
        return 128 + SIGPIPE;
    }
    // The reason is known only if this flush failed.
    printError("the output cannot be written" +
               (wasGood && errno != 0 ? ": " + std::generic_category().message(errno) : std::string()));
    return eFailed;
}

}  // namespace calljournal
