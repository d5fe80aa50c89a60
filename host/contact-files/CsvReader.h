#pragma once

#include <istream>
#include <optional>
#include <string>
#include <vector>

#include "host/contact-files/ContactReader.h"
#include "host/presentation/ContactFields.h"
#include "host/text-files/CsvRows.h"

namespace host {

/// Reads contacts from a CSV file whose first row names the columns: the names of `contactFields`, in any
/// case and any order. A column of another name is skipped, with a remark in the first record.
class CsvReader final : public ContactReader {
public:
    /// Throws `ContactFileError` if no column has a known name.
    explicit CsvReader(std::istream& stream);

    [[nodiscard]] std::optional<ContactRecord> next() override;

private:
    /// Null for a column that is skipped.
    using Column = const ContactField*;

    void takeCell(std::size_t column, const std::string& text, ContactRecord& record) const;

    CsvRows m_rows;
    std::vector<Column> m_columns;
    std::vector<std::string> m_remarks;
};

}  // namespace host
