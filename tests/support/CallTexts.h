#pragma once

#include <string>

#include "platform/csta/CSTADevice.h"
#include "src/JournalServiceEvents/calls/Call.h"

namespace journaltest {

/// A state by its name: "Delivered"; "Unknown" for a text or a number without one.
[[nodiscard]] std::string nameOf(journal::Call::states_t state);
[[nodiscard]] journal::Call::states_t stateOf(const std::string& name);

/// A device by "4711", "4711:Ann_B" ("_" is a space), ":Ann", "here" for the telephone itself, or "-" for
/// none.
[[nodiscard]] CSTADevice deviceOf(const std::string& word);

/// The parties of a record without those that are empty, roles with the same party together:
/// "called+remote[4711 Ann] connected[4712]".
[[nodiscard]] std::string partiesText(const journal::Call& call);

}  // namespace journaltest
