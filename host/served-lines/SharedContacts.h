#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <vector>

#include "host/digits/DigitAnalysis.h"
#include "host/directory/Phonebook.h"
#include "host/framework/Strand.h"

namespace host {

class ServedLine;
struct LineSettings;

/// The contacts that all lines share. After a change it renames the entries of one line after the other, on a
/// strand of its own; changes while that runs are followed by one more run.
///
/// One owner starts and stops it. Any thread may use the phonebook between.
class SharedContacts {
public:
    /// `rules` has the dialling rules, which are those of all lines. `lines` returns the lines that are
    /// served. The rest is borrowed and outlives the object.
    SharedContacts(Database& database, WorkerPool& pool, const LineSettings& rules,
                   std::function<std::vector<std::shared_ptr<ServedLine>>()> lines);
    ~SharedContacts() { stop(); }
    SharedContacts(const SharedContacts&) = delete;
    SharedContacts& operator=(const SharedContacts&) = delete;

    [[nodiscard]] Phonebook& phonebook() noexcept { return m_phonebook; }

    void start();
    /// Waits for the line that is being renamed. Idempotent.
    void stop();

private:
    void renameAll();

    DigitAnalysis m_digits;
    Phonebook m_phonebook;
    const std::function<std::vector<std::shared_ptr<ServedLine>>()> m_lines;

    std::atomic<bool> m_isDue{false};
    std::atomic<bool> m_ends{false};

    Strand m_strand;
};

}  // namespace host
