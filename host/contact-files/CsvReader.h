#pragma once

#include <istream>
#include <optional>
#include <string>
#include <vector>

#include "host/contact-files/ContactReader.h"
#include "host/contact-files/CsvRows.h"
#include "host/presentation/ContactFields.h"

namespace host {

/// Reads contacts from a CSV file whose first row names the columns: the names of `contactFields`, capital and small letters
/// alike, in any order. A column of another name is passed over, which the first record remarks.
class CsvReader final : public ContactReader {
public:
    /// Throws `ContactFileError` when no column has a name that is known.
    explicit CsvReader(std::istream& stream);

    [[nodiscard]] std::optional<ContactRecord> next() override;

private:
    /// Nothing for a column that is passed over.
    using Column = const ContactField*;

    void takeCell(std::size_t column, const std::string& text, ContactRecord& record) const;

    CsvRows m_rows;
    std::vector<Column> m_columns;
    std::vector<std::string> m_remarks;
};

}  // namespace host
