#include <fcntl.h>
#include <malloc.h>
#include <unistd.h>

#include <csignal>

#include "apps/calljournal/CommandLine.h"

namespace {

/// Keeps the memory of a server that runs for months near what it uses. By default each thread allocates in a
/// heap of its own, and freed blocks stay in all of them. Requires: no thread was started.
void limitUnusedMemory() {
    constexpr int kHeaps = 2;
    constexpr int kReturnedBytes = 256 * 1024;
    mallopt(M_ARENA_MAX, kHeaps);
    // Buffers of this size are returned when they are freed; by default the limit grows with the largest.
    mallopt(M_MMAP_THRESHOLD, kReturnedBytes);
    mallopt(M_TRIM_THRESHOLD, kReturnedBytes);
}

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
    limitUnusedMemory();
    // A file that reaches the size limit of the process is then as a full disk, and a reader that has gone is
    // a failed write.
    std::signal(SIGXFSZ, SIG_IGN);
    std::signal(SIGPIPE, SIG_IGN);
    return calljournal::runCommandLine(argc, argv);
}
