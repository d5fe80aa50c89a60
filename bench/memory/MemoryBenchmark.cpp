// Measures the memory of telephone lines in one process:
//   memory_benchmark --data DIR --lines 1000     idle lines that monitor their devices at a simulated switch
//   memory_benchmark --data DIR --entries 1000   one line whose four lists fill with entries of one call
// DIR is empty or does not exist. Prints one JSON object: the resident memory of the process before
// and after, in KiB, without the memory that is free and without the database's, whose caches are bounded.

#include <malloc.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "bench/calls/CallPlan.h"
#include "bench/load/LoadSwitch.h"
#include "bench/load/SystemCall.h"
#include "host/csta/association/SwitchLink.h"
#include "host/data/LiveCallWriter.h"
#include "host/database/Database.h"
#include "host/database/DatabaseMemory.h"
#include "host/framework/AsioTimerSource.h"
#include "host/framework/LibraryLoader.h"
#include "host/framework/WorkerPool.h"
#include "host/limits/UnusedMemory.h"
#include "host/line/Line.h"
#include "host/log/Log.h"
#include "host/services/HardwareVariant.h"
#include "host/switch/server/SwitchSimulator.h"

namespace {

/// The device of the first line, which is not measured.
constexpr int kFirstDevice = 2000;
/// A port that no switch listens on.
constexpr std::uint16_t kNoPort = 9;
constexpr auto kStartLimit = std::chrono::seconds(60);
constexpr std::size_t kKib = 1024;

/// A switch in a process of its own, so that its memory is not measured.
class SwitchProcess {
public:
    /// Begins to listen, reports the port, and plays.
    using Body = std::function<void(const std::function<void(std::uint16_t)>& report)>;

    explicit SwitchProcess(const Body& body) {
        std::array<int, 2> ends{};
        bench::checked(::pipe(ends.data()), "pipe");
        m_id = bench::checked(::fork(), "fork");
        if (m_id == 0) {
            run(body, ends[1]);
        }
        ::close(ends[1]);
        const bool reported = ::read(ends[0], &m_port, sizeof m_port) == sizeof m_port;
        ::close(ends[0]);
        if (!reported) {
            throw std::runtime_error("the switch does not start");
        }
    }
    SwitchProcess(const SwitchProcess&) = delete;
    SwitchProcess& operator=(const SwitchProcess&) = delete;
    ~SwitchProcess() {
        ::kill(m_id, SIGKILL);
        ::waitpid(m_id, nullptr, 0);
    }

    [[nodiscard]] std::uint16_t port() const noexcept { return m_port; }

private:
    [[noreturn]] static void run(const Body& body, int output) {
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        host::Log::configure("warning", "");
        try {
            body([output](std::uint16_t port) {
                bench::checked(::write(output, &port, sizeof port), "write");
            });
        } catch (const std::exception& error) {
            std::fprintf(stderr, "switch: %s\n", error.what());
        }
        ::_exit(1);
    }

    pid_t m_id = -1;
    std::uint16_t m_port = 0;
};

/// A simulated switch for any number of lines, without calls.
void serveLines(const std::function<void(std::uint16_t)>& report) {
    host::SwitchOptions options;
    options.port = 0;
    host::SwitchSimulator simulator(options);
    simulator.start();
    report(simulator.port());
    ::pause();
}

/// A switch for one line that plays `calls` calls for each of its lists, with a pause after each call.
void playCalls(const std::function<void(std::uint16_t)>& report, std::size_t calls,
               std::chrono::microseconds pause) {
    using Kind = bench::CallKind;
    bench::LoadSwitch callSwitch;
    report(callSwitch.port());
    callSwitch.awaitMonitor();
    bench::CallPlan plan;
    for (const Kind kind : {Kind::eMissed, Kind::eDialled, Kind::eForwarded, Kind::eReceived}) {
        plan.kind = kind;
        for (std::size_t call = 0; call < calls; ++call) {
            callSwitch.sendAll(callSwitch.callBytes(plan, call));
            std::this_thread::sleep_for(pause);
        }
        plan.firstParty += calls;
        plan.idPrefix += '7';
    }
    ::pause();
}

std::size_t residentKib() {
    ::malloc_trim(0);
    std::ifstream file("/proc/self/statm");
    std::size_t total = 0;
    std::size_t resident = 0;
    file >> total >> resident;
    return resident * static_cast<std::size_t>(::sysconf(_SC_PAGESIZE)) / kKib;
}

/// A connected line has several descriptors.
void raiseDescriptorLimit() {
    rlimit limit{};
    bench::checked(::getrlimit(RLIMIT_NOFILE, &limit), "getrlimit");
    limit.rlim_cur = limit.rlim_max;
    bench::checked(::setrlimit(RLIMIT_NOFILE, &limit), "setrlimit");
}

/// The lines of one process, and what they share.
class Lines {
public:
    Lines(const std::filesystem::path& data, std::uint16_t switchPort)
        : m_database(data / "journal.db"),
          m_library(host::LibraryLoader::locate(host::LibraryLoader::kJournalLibrary,
                                                host::LibraryLoader::programDirectory())),
          m_link({.port = switchPort}) {
        m_link.start();
    }
    Lines(const Lines&) = delete;
    Lines& operator=(const Lines&) = delete;
    ~Lines() {
        for (const std::unique_ptr<host::Line>& line : m_lines) {
            line->disconnect();
        }
        m_link.stop();
        for (const std::unique_ptr<host::Line>& line : m_lines) {
            line->stop();
        }
    }

    /// Starts lines until there are so many, and waits until all but the first are monitored.
    void growTo(std::size_t count) {
        const std::size_t before = std::max<std::size_t>(m_lines.size(), 1);
        while (m_lines.size() < count) {
            host::LineSettings settings;
            settings.link.port = kNoPort;
            settings.sharedLink = m_lines.empty() ? nullptr : &m_link;
            settings.managementOverrides["server-based-features"] = "true";  // or it has no forwarded calls
            settings.link.ownDevice = std::to_string(kFirstDevice + static_cast<int>(m_lines.size()));
            m_lines.push_back(std::make_unique<host::Line>(settings, m_library.createJournalService(),
                                                           m_database, m_liveCalls, m_pool, m_timerSource));
            m_lines.back()->start();
        }
        const auto end = std::chrono::steady_clock::now() + kStartLimit;
        const auto isMonitoring = [](const auto& line) { return line->linkStatus().monitoring; };
        while (!std::all_of(m_lines.begin() + static_cast<std::ptrdiff_t>(before), m_lines.end(),
                            isMonitoring)) {
            if (std::chrono::steady_clock::now() > end) {
                throw std::runtime_error("not all lines are monitored");
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(500));
    }

    /// Waits until the database has so many entries of call lists.
    void awaitEntries(std::size_t count) {
        const auto end = std::chrono::steady_clock::now() + kStartLimit;
        for (std::size_t entries = 0; entries < count;) {
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
            m_database.read("counting entries", [&entries](host::Database::Session& session) {
                host::Query query = session.query("SELECT count(*) FROM call_item");
                entries = query.next() ? static_cast<std::size_t>(query.number()) : 0;
            });
            if (std::chrono::steady_clock::now() > end) {
                throw std::runtime_error("the lists do not fill");
            }
        }
    }

    /// The resident memory of the process, without what is free and without the database's.
    [[nodiscard]] static std::size_t residentKib() {
        return ::residentKib() - static_cast<std::size_t>(host::databaseMemory()) / kKib;
    }

private:
    host::Database m_database;
    host::LiveCallWriter m_liveCalls{m_database};
    host::WorkerPool m_pool;
    host::AsioTimerSource m_timerSource{m_pool};
    host::LibraryLoader m_library;
    host::SwitchLink m_link;
    std::vector<std::unique_ptr<host::Line>> m_lines;
};

nlohmann::json measure(const std::filesystem::path& data, std::size_t count, std::size_t entries,
                       std::chrono::microseconds pause) {
    // First, because it forks.
    const SwitchProcess callSwitch([=](const std::function<void(std::uint16_t)>& report) {
        entries > 0 ? playCalls(report, entries, pause) : serveLines(report);
    });
    host::Log::configure("warning", "");
    raiseDescriptorLimit();
    host::HardwareVariant::set(0);
    std::filesystem::remove_all(data);
    std::filesystem::create_directories(data);
    Lines lines(data, callSwitch.port());
    // The first line also loads what all lines share.
    lines.growTo(1);
    const std::size_t before = Lines::residentKib();
    lines.growTo(1 + count);
    lines.awaitEntries(4 * entries);
    const std::size_t after = Lines::residentKib();
    const double each = static_cast<double>(after - before) / static_cast<double>(count);
    return {{"lines", count}, {"before-kib", before}, {"after-kib", after}, {"kib-of-a-line", each}};
}

}  // namespace

int main(int count, char** arguments) {
    CLI::App app("Measures the memory of telephone lines.");
    std::filesystem::path data;
    std::size_t lines = 1;
    std::size_t entries = 0;
    app.add_option("--data", data, "the directory of the database; begins empty")->required();
    app.add_option("--lines", lines, "the number of lines");
    app.add_option("--entries", entries, "the number of entries in each list of one line");
    std::uint64_t rate = 250;
    app.add_option("--rate", rate, "calls a second")->check(CLI::PositiveNumber);
    CLI11_PARSE(app, count, arguments);
    // As the program does.
    host::limitUnusedMemory();
    try {
        std::cout << measure(data, lines, entries, std::chrono::microseconds(1'000'000 / rate)).dump()
                  << std::endl;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "memory_benchmark: %s\n", error.what());
        return 1;
    }
    return 0;
}
