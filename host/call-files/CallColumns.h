#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/call-files/CallFields.h"

namespace host {

/// The columns of a file of call-detail records by the members of a call that they hold:
/// "start=calldate,number=src,duration=billsec". A column is named by its title, or by its number from 1 on
/// in a file without a row of titles; "start=date+time" joins two columns with a blank.
///
/// A plain value.
class CallColumns {
public:
    /// Throws `CallFieldError` for a text of another form, an unknown member, or without `start`.
    explicit CallColumns(std::string_view text);

    /// True if the first row has the titles of the columns.
    [[nodiscard]] bool hasTitles() const noexcept { return m_hasTitles; }
    /// Finds the columns of the titles. Throws `CallFieldError` if one is missing. Requires: `hasTitles`.
    void find(const std::vector<std::string>& titles);

    /// The members in a row. Requires: without titles, or `find` was called.
    [[nodiscard]] CallFields fieldsIn(const std::vector<std::string>& cells) const;

private:
    struct Source {
        std::string member;
        std::vector<std::string> names;
        /// The columns from 0 on.
        std::vector<std::size_t> columns;
    };

    std::vector<Source> m_sources;
    bool m_hasTitles = true;
};

}  // namespace host
