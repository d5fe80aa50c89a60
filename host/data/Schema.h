#pragma once

namespace host {

/// The tables (docs/database.md), as the steps that lead to them. Step N turns version N of a database into version N + 1;
/// version 0 is an empty file. A step that has been released is never changed: what is new becomes a new step at the end.
struct Schema {
    /// Marks a file as a database of this program ("CJrn").
    static constexpr int kApplicationId = 0x434a726e;

    /// The version that the steps lead to.
    static int version() noexcept;
    /// The SQL that leads from `version` to the next.
    static const char* step(int version) noexcept;
};

}  // namespace host
