#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "fuzz/support/Property.h"
#include "fuzz/support/ScratchDatabase.h"
#include "host/call-files/CallCalendar.h"
#include "host/call-files/CallFileReader.h"
#include "host/call-files/CallWriter.h"
#include "host/call-import/CallImport.h"
#include "host/history/CallJson.h"
#include "host/stored-lists/StoredEntries.h"
#include "tests/support/FakeJournalService.h"

// Feeds any bytes to the import of calls. The first text line is the format: "json", "jsonl", or the columns
// of call-detail records in a CSV file ("start=date,number=src"). A call that was read is exported, and must
// be read back equal; the calls that were imported once are not imported again.

namespace {

using fuzz::require;

constexpr std::size_t kMaxImported = 20;

using Calls = std::vector<host::Call>;

Calls callsIn(const std::string& text, host::CallFormat format,
              const std::optional<host::CallColumns>& columns = std::nullopt) {
    host::CallReading reading;
    reading.ownNumber = "2001";
    reading.time.toUtc = [](std::chrono::local_seconds local) {
        return std::chrono::sys_seconds(local.time_since_epoch() - std::chrono::hours(1));
    };
    std::istringstream file(text);
    Calls calls;
    host::readCalls(file, format, columns, reading, [&calls](const host::CallRecord& each) {
        if (each.error.empty()) {
            calls.push_back(each.call);
        }
    });
    return calls;
}

Calls callsIn(const std::string& head, const std::string& body) {
    try {
        if (head == "json" || head == "jsonl") {
            return callsIn(body, host::callFormatNamed(head).value());
        }
        return callsIn(body, host::CallFormat::eCsv, host::CallColumns(head));
    } catch (const host::CallFieldError&) {
        return {};
    } catch (const host::CallFileError&) {
        return {};
    }
}

void checkCalendar(const std::string& event) {
    fuzz::requireUtf8(event, "an event of a calendar is not UTF-8");
    for (std::size_t begin = 0; begin < event.size();) {
        const std::size_t end = event.find("\r\n", begin);
        require(end != std::string::npos, "a line of a calendar has no end");
        const std::string_view line(event.data() + begin, end - begin);
        require(line.size() <= 75, "a line of a calendar has more than 75 bytes");
        require(!fuzz::hasControlCharacters(line) && line.find_first_of("\r\n") == line.npos,
                "a line of a calendar has control characters");
        begin = end + 2;
    }
}

void checkExported(const host::Call& call) {
    const auto json = host::callJson(call);
    const std::string line = host::callJsonLine(json);
    fuzz::requireUtf8(line, "a line of JSON is not UTF-8");
    const Calls again = callsIn(line, host::CallFormat::eJsonLines);
    require(again.size() == 1 && host::callJson(again.front()) == json,
            "a call that was exported is read as another one");
    checkCalendar(host::calendarEvent(json, "2001"));
}

void checkImported(const Calls& calls) {
    static fuzz::ScratchDatabase scratch([](host::Database& /*database*/) {});
    host::Database& database = scratch.renew();
    journaltest::FakeJournalService journal;
    journal.setResponse(false);
    host::StoredEntries entries({journal, database, "2001", nullptr, [] {}});
    std::size_t stored = 0;
    for (int times = 0; times < 2; ++times) {
        host::CallImport import(entries);
        const auto counts = import.add(calls, false);
        import.finish();
        require(counts.has_value(), "an import fails");
        require(counts->imported + counts->known == calls.size(), "a call is neither imported nor known");
        require(times == 0 || counts->imported == 0, "a call that was imported is imported again");
        stored += counts->imported;
    }
    require(stored > 0, "the import into an empty history stores no call");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    const std::size_t end = std::min(text.find('\n'), text.size());
    Calls calls = callsIn(text.substr(0, end), text.substr(std::min(end + 1, text.size())));
    for (const host::Call& call : calls) {
        checkExported(call);
    }
    calls.resize(std::min(calls.size(), kMaxImported));
    if (!calls.empty()) {
        checkImported(calls);
    }
    return 0;
}
