#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <set>
#include <string>

#include "host/data/LiveCallWriter.h"
#include "host/database/Database.h"
#include "host/framework/AsioTimerSource.h"
#include "host/framework/WorkerPool.h"
#include "host/line/Line.h"
#include "journalservice/JournalServiceIfc.h"
#include "tests/reliability/random-calls/ExpectedEntries.h"
#include "tests/support/RecordingObserver.h"
#include "tests/support/TemporaryDirectory.h"

namespace reliability {

/// A line of the program with the journal on it, its data in a temporary directory.
class PhoneUnderTest {
public:
    PhoneUnderTest(const PhoneType& type, std::uint16_t switchPort);
    ~PhoneUnderTest();
    PhoneUnderTest(const PhoneUnderTest&) = delete;
    PhoneUnderTest& operator=(const PhoneUnderTest&) = delete;

    /// Waits until the journal has filed a missed call of that number since `clear`. False after the timeout.
    [[nodiscard]] bool awaitMissed(const std::string& number,
                                   std::chrono::milliseconds timeout = std::chrono::seconds(20));
    /// The entries of the four lists, without the missed ones of `number`.
    [[nodiscard]] Entries entriesWithout(const std::string& number);
    [[nodiscard]] JournalServiceIfc& journal() { return *m_journal; }
    void clear();

private:
    TemporaryDirectory m_directory;
    host::Database m_database{m_directory.path() / "journal.db"};
    host::LiveCallWriter m_liveCalls{m_database};
    host::WorkerPool m_pool{2};
    host::AsioTimerSource m_timerSource{m_pool};
    std::unique_ptr<host::Line> m_line;
    JournalServiceIfc* m_journal = nullptr;
    journaltest::RecordingObserver m_observer;

    // Guarded by m_mutex.
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::set<std::string> m_missed;
};

}  // namespace reliability
