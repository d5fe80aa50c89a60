#include "apps/calljournal/OutputStatus.h"

#include <cerrno>
#include <iostream>
#include <system_error>

#include "apps/calljournal/CommandLine.h"

namespace calljournal {

int statusOfOutput(bool succeeded) {
    const bool wasGood = std::cout.good();
    errno = 0;
    if (std::cout.flush().good()) {
        return succeeded ? eDone : eFailed;
    }
    // The reason is known only if this flush failed.
    std::cerr << "calljournal: the output cannot be written"
              << (wasGood && errno != 0 ? ": " + std::generic_category().message(errno) : "") << std::endl;
    return eFailed;
}

}  // namespace calljournal
