#include "host/http/ProcessMetrics.h"

#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <system_error>

namespace host {
namespace {

prometheus::Gauge& gauge(prometheus::Registry& registry, const char* name, const char* help) {
    return prometheus::BuildGauge().Name(name).Help(help).Register(registry).Add({});
}

double seconds(const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

/// The start of the process in seconds since 1970; 0 if the system does not tell it.
double startTime() {
    // The fields after the name of the program, which may contain blanks: the 20th is the start.
    constexpr int kBeforeStart = 19;
    std::ifstream file("/proc/self/stat");
    std::string text;
    std::getline(file, text);
    std::istringstream fields(text.substr(std::min(text.size(), text.rfind(')') + 1)));
    std::string field;
    for (int i = 0; i < kBeforeStart; ++i) {
        fields >> field;
    }
    double ticks = 0;
    fields >> ticks;
    // A sandbox hides /proc/stat, which has the time of the boot.
    timespec sinceBoot{};
    if (ticks <= 0 || ::clock_gettime(CLOCK_BOOTTIME, &sinceBoot) != 0) {
        return 0;
    }
    const std::chrono::duration<double> now = std::chrono::system_clock::now().time_since_epoch();
    const double up = static_cast<double>(sinceBoot.tv_sec) + static_cast<double>(sinceBoot.tv_nsec) / 1e9;
    return now.count() - up + ticks / static_cast<double>(::sysconf(_SC_CLK_TCK));
}

}  // namespace

ProcessMetrics::ProcessMetrics(prometheus::Registry& registry)
    : m_cpuSeconds(prometheus::BuildCounter()
                       .Name("process_cpu_seconds_total")
                       .Help("Processor time that the program has used")
                       .Register(registry)
                       .Add({})),
      m_residentBytes(gauge(registry, "process_resident_memory_bytes", "Memory of the program in RAM")),
      m_openFiles(gauge(registry, "process_open_fds", "Open file descriptors")),
      m_mostFiles(gauge(registry, "process_max_fds", "The most file descriptors that may be open")) {
    gauge(registry, "process_start_time_seconds", "Start of the program, in seconds since 1970")
        .Set(startTime());
}

void ProcessMetrics::update() {
    rusage usage{};
    if (::getrusage(RUSAGE_SELF, &usage) == 0) {
        const double total = seconds(usage.ru_utime) + seconds(usage.ru_stime);
        m_cpuSeconds.Increment(std::max(0.0, total - m_cpuSeconds.Value()));
    }
    std::ifstream memory("/proc/self/statm");
    double pages = 0;
    if (memory >> pages >> pages) {
        m_residentBytes.Set(pages * static_cast<double>(::sysconf(_SC_PAGESIZE)));
    }
    std::error_code error;
    const std::filesystem::directory_iterator files("/proc/self/fd", error);
    if (!error) {
        // Without the descriptor with which they are counted.
        m_openFiles.Set(static_cast<double>(std::distance(begin(files), end(files)) - 1));
    }
    rlimit limit{};
    if (::getrlimit(RLIMIT_NOFILE, &limit) == 0) {
        m_mostFiles.Set(static_cast<double>(limit.rlim_cur));
    }
}

}  // namespace host
