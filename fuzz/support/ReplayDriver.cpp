#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cinttypes>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "fuzz/support/Mutation.h"
#include "fuzz/support/Property.h"
#include "tests/reliability/support/Rounds.h"

// Plays a fuzz target without libFuzzer, in the form of a reliability check: the corpus in the first round,
// and in each round one changed file of it. An input that breaks a property, crashes, or takes longer than 30
// seconds is written to the file "input-SEED" in the directory of the program, and ends it with status 1.
// With the environment variable FUZZ_INPUT, the target reads only that file.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

constexpr unsigned kMaxSeconds = 30;

// For the signal handler.
const char* g_target = "";
const char* g_file = "";
std::uint64_t g_seed = 0;
const std::string* g_input = nullptr;
std::string g_directory;

void writeInput() {
    std::array<char, 4096> name{};
    std::snprintf(name.data(), name.size(), "%s/input-%" PRIu64, g_directory.c_str(), g_seed);
    const int file = ::open(name.data(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    if (file >= 0 && g_input != nullptr) {
        static_cast<void>(!::write(file, g_input->data(), g_input->size()));
        ::close(file);
    }
}

/// The program ends in any case, so what is not safe in a signal handler can only fail to report.
void reportSignal(int signal) {
    const char* const property = fuzz::brokenProperty();
    const char* const reason = *property != '\0'   ? property
                               : signal == SIGALRM ? "it takes too long"
                               : signal == SIGABRT ? "an exception or an abort"
                                                   : "a crash";
    writeInput();
    std::array<char, 512> text{};
    std::snprintf(text.data(), text.size(), "%s: fault with seed %" PRIu64 ": %s%s%s (signal %d)\n", g_target,
                  g_seed, g_file, *g_file != '\0' ? ": " : "", reason, signal);
    static_cast<void>(!::write(STDOUT_FILENO, text.data(), std::strlen(text.data())));
    std::_Exit(1);
}

/// A sanitizer keeps its own handlers, which say more.
void handleSignals() {
    for (const int signal : {SIGABRT, SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGALRM}) {
        struct sigaction current {};
        ::sigaction(signal, nullptr, &current);
        if (current.sa_handler == SIG_DFL) {
            struct sigaction action {};
            action.sa_handler = &reportSignal;
            ::sigaction(signal, &action, nullptr);
        }
    }
}

void run(const std::string& input) {
    g_input = &input;
    ::alarm(kMaxSeconds);
    // A copy without spare memory, so that a sanitizer sees a read after its end.
    const std::vector<std::uint8_t> bytes(input.begin(), input.end());
    LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
    ::alarm(0);
    g_input = nullptr;
}

std::string targetName() {
    const std::string name = program_invocation_short_name;
    return name.substr(0, name.rfind("_fuzz"));
}

}  // namespace

int main(int argc, char** argv) {
    const std::string name = targetName();
    const std::string check = name + "_fuzz";
    g_target = check.c_str();
    g_directory = std::filesystem::read_symlink("/proc/self/exe").parent_path().string();
    handleSignals();
    const reliability::Rounds rounds(check, argc, argv, 1000);
    if (const char* const file = std::getenv("FUZZ_INPUT")) {
        run(fuzz::Corpus::contentOf(file));
        return 0;
    }
    const std::filesystem::path directory(JOURNAL_FUZZ_DIRECTORY);
    const fuzz::Corpus corpus(directory / "corpus" / name, directory / "dictionaries" / (name + ".dict"));
    bool isFirst = true;
    return rounds.play([&](std::uint64_t seed) {
        g_seed = seed;
        if (isFirst) {
            for (const fuzz::Corpus::File& file : corpus.files()) {
                g_file = file.name.c_str();
                run(file.bytes);
            }
            g_file = "";
            isFirst = false;
        }
        reliability::Dice dice(seed);
        run(corpus.mutated(dice));
        return std::vector<std::string>();
    });
}
