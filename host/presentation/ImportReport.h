#pragma once

#include <cstddef>
#include <limits>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

namespace host {

/// The progress of an import of contacts. A plain value.
struct ImportReport {
    /// A contact, or a part of one, that was not imported.
    struct Note {
        /// The line of the file, from 1 on.
        std::size_t line = 0;
        std::string text;
        /// True if the whole contact was skipped.
        bool skipped = false;
    };

    /// Contacts of the file, skipped ones included.
    std::size_t read = 0;
    std::size_t skipped = 0;
    std::size_t added = 0;
    std::size_t changed = 0;
    std::size_t unchanged = 0;
    std::vector<Note> notes;

    /// Adds the counts of a batch: `added`, `changed` and `unchanged`.
    template <typename Counts>
    void count(const Counts& batch) {
        added += batch.added;
        changed += batch.changed;
        unchanged += batch.unchanged;
    }
};

/// {"read","added","changed","unchanged","skipped":[{"line","text"}],"remarks":[{"line","text"}]}, with the
/// first `maxNotes` of the notes. Pure; any thread may call.
[[nodiscard]] nlohmann::ordered_json importJson(
    const ImportReport& report, std::size_t maxNotes = std::numeric_limits<std::size_t>::max());

}  // namespace host
