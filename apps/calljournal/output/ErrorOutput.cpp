#include "apps/calljournal/output/ErrorOutput.h"

#include <iostream>

namespace calljournal {

void printError(const std::string& text) {
    std::cerr << "calljournal: " + text + "\n" << std::flush;
}

}  // namespace calljournal
