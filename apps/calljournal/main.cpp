#include "apps/calljournal/CommandLine.h"

int main(int argc, char** argv) {
    return calljournal::runCommandLine(argc, argv);
}
