#include "host/systemd/JournalStream.h"

#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <exception>
#include <string>

#include "host/systemd/SystemdLibrary.h"

namespace host {
namespace {

/// The priority of syslog.
int priorityOf(int level) {
    constexpr int kInformation = 6;
    constexpr int kDebug = 7;
    return level < 4 ? level + 1 : level < 6 ? kInformation : kDebug;
}

}  // namespace

bool isJournalStream() noexcept {
    const char* const stream = std::getenv("JOURNAL_STREAM");
    struct stat output {};
    if (stream == nullptr || ::fstat(STDERR_FILENO, &output) != 0) {
        return false;
    }
    try {
        return stream == std::to_string(output.st_dev) + ":" + std::to_string(output.st_ino) &&
               SystemdLibrary::get() != nullptr;
    } catch (const std::exception&) {
        return false;
    }
}

bool sendToJournal(int level, std::string_view line) noexcept {
    std::string_view component;
    std::string_view file;
    std::string_view number;
    const std::size_t bracket = line.find("] ");
    if (line.starts_with('[') && bracket != std::string_view::npos) {
        component = line.substr(1, bracket - 1);
        line.remove_prefix(bracket + 2);
    }
    const std::size_t origin = line.rfind(" (");
    const std::size_t colon = line.rfind(':');
    if (line.ends_with(')') && origin != std::string_view::npos && colon != std::string_view::npos &&
        colon > origin) {
        file = line.substr(origin + 2, colon - origin - 2);
        number = line.substr(colon + 1, line.size() - colon - 2);
        line = line.substr(0, origin);
    }
    try {
        std::array<std::string, 6> fields{
            "MESSAGE=" + std::string(line),   "PRIORITY=" + std::to_string(priorityOf(level)),
            "SYSLOG_IDENTIFIER=calljournal",  "CALLJOURNAL_COMPONENT=" + std::string(component),
            "CODE_FILE=" + std::string(file), "CODE_LINE=" + std::string(number)};
        std::array<iovec, fields.size()> vector{};
        for (std::size_t at = 0; at < fields.size(); ++at) {
            vector[at] = {fields[at].data(), fields[at].size()};
        }
        return SystemdLibrary::get()->journalSend(vector.data(), static_cast<int>(vector.size())) == 0;
    } catch (const std::exception&) {  // no memory
        return false;
    }
}

}  // namespace host
