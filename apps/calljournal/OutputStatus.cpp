#include "apps/calljournal/OutputStatus.h"

#include <cerrno>
#include <iostream>
#include <string>
#include <system_error>

#include "apps/calljournal/CommandLine.h"
#include "apps/calljournal/ErrorOutput.h"

namespace calljournal {

int statusOfOutput(bool succeeded) {
    const bool wasGood = std::cout.good();
    errno = 0;
    if (std::cout.flush().good()) {
        return succeeded ? eDone : eFailed;
    }
    // The reason is known only if this flush failed.
    printError("the output cannot be written" +
               (wasGood && errno != 0 ? ": " + std::generic_category().message(errno) : std::string()));
    return eFailed;
}

}  // namespace calljournal
