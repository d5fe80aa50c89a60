#pragma once

#include <functional>
#include <optional>
#include <string>

namespace host {

/// The reason for which work with the database failed. A plain value.
struct DatabaseFailure {
    /// SQLite's primary error code; 0 for an exception of the work.
    int code = 0;
    std::string text{};

    /// True if the database refuses the work, and not the work is wrong.
    [[nodiscard]] bool isOfDatabase() const noexcept;
    /// True for an error that one work may meet again and again and others do not, as a damaged page.
    [[nodiscard]] bool mayBeOfOneWork() const noexcept;

    /// Runs the work; `std::nullopt` if it throws no exception.
    [[nodiscard]] static std::optional<DatabaseFailure> of(const std::function<void()>& work) noexcept;
};

}  // namespace host
