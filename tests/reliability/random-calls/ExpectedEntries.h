#pragma once

#include <cstddef>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "tests/reliability/random-calls/CallEvent.h"
#include "tests/reliability/random-calls/SwitchModel.h"

namespace reliability {

/// The phone type, as far as it decides what is filed.
struct PhoneType {
    bool sip = false;
    /// "server-based-features".
    bool forwards = false;

    [[nodiscard]] std::string text() const;
};

/// The steps of a story that the phone does not get because the link is lost: from `first` up to `end`.
struct Gap {
    std::size_t first = 0;
    std::size_t end = 0;
};

/// Entries of the journal: "missed 4711 Ann Abel elsewhere". Calls of one party that begin in the same second
/// are one call, so equal entries count once.
using Entries = std::set<std::string>;

[[nodiscard]] std::string entryText(const std::string& list, const std::string& number,
                                    const std::string& name, bool elsewhere);

/// An entry that must be in the journal: one of these texts, usually there is one only.
using ExpectedEntry = std::vector<std::string>;

/// True if each expected entry was found, and nothing else.
[[nodiscard]] bool matches(const std::vector<ExpectedEntry>& expected, const Entries& found);

/// The entries that the story must leave in the journal. They follow from who called whom and which phone
/// took the call, and from docs/call-filing.md where a phone type files less.
[[nodiscard]] std::vector<ExpectedEntry> expectedEntries(const Story& story, const PhoneType& phone,
                                                         const Dialect& dialect,
                                                         const std::optional<Gap>& gap);

}  // namespace reliability
