#pragma once

namespace host {

/// The tables (docs/database.md) as migration steps. Step N turns version N of a database into version N + 1;
/// version 0 is an empty file. A released step is never changed: a change is a new step at the end.
struct Schema {
    /// Marks a file as a database of this program ("CJrn").
    static constexpr int kApplicationId = 0x434a726e;

    /// The size of a page of a new database; an existing one keeps its own. A filed call changes a few bytes
    /// in each of about a dozen pages, which the log takes whole.
    static constexpr int kPageBytes = 2048;

    /// The version after the last step.
    static int version() noexcept;
    /// The SQL that turns `version` into the next version.
    static const char* step(int version) noexcept;
};

}  // namespace host
