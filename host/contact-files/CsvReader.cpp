#include "host/contact-files/CsvReader.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "host/limits/TextLimits.h"
#include "host/text-files/CsvCell.h"
#include "host/text-files/FileText.h"

namespace host {
namespace {

const ContactField* fieldNamed(const std::string& name) {
    const auto& fields = contactFields();
    const auto found = std::find_if(fields.begin(), fields.end(), [&name](const ContactField& field) {
        return lower(field.name) == lower(name);
    });
    return found == fields.end() ? nullptr : &*found;
}

bool isEmpty(const Contact& contact) {
    return contact.getSurname().empty() && contact.getFirstname().empty() && contact.getCompany().empty();
}

}  // namespace

CsvReader::CsvReader(std::istream& stream) : m_rows(stream) {
    CsvRows::Row head;
    static_cast<void>(m_rows.next(head));
    bool known = false;
    for (const std::string& cell : head.cells) {
        const std::string name = cleaned(cell);
        m_columns.push_back(fieldNamed(name));
        known = known || m_columns.back() != nullptr;
        if (m_columns.back() == nullptr) {
            m_remarks.push_back("the column \"" + name + "\" is unknown and left out");
        }
    }
    if (!known) {
        std::string names;
        for (const ContactField& field : contactFields()) {
            names += (names.empty() ? "" : ", ") + std::string(field.name);
        }
        throw ContactFileError("its first row has no known column name; the names are " + names);
    }
}

std::optional<ContactRecord> CsvReader::next() {
    CsvRows::Row row;
    if (!m_rows.next(row)) {
        return std::nullopt;
    }
    ContactRecord record;
    record.line = row.line;
    record.remarks = std::exchange(m_remarks, {});
    if (row.damaged) {
        record.refusal = "a quotation mark is not closed";
        return record;
    }
    for (std::size_t column = 0; column < row.cells.size() && record.refusal.empty(); ++column) {
        takeCell(column, row.cells[column], record);
    }
    if (record.refusal.empty()) {
        record.refusal = refusalOfLength(record.contact);
    }
    if (record.refusal.empty() && isEmpty(record.contact)) {
        record.refusal = "it has no name";
    }
    return record;
}

void CsvReader::takeCell(std::size_t column, const std::string& text, ContactRecord& record) const {
    if (column >= m_columns.size()) {
        if (!text.empty()) {
            record.refusal = "it has more cells than there are columns; is a quotation mark missing?";
        }
        return;
    }
    const ContactField* const field = m_columns[column];
    if (field == nullptr) {
        return;
    }
    if (!isUtf8(text)) {
        record.refusal = std::string("its ") + field->name + " is not UTF-8";
    } else if (const std::string value = cleaned(textOfCsvCell(cleaned(text)));
               !field->set(record.contact, value)) {
        record.refusal = std::string("its ") + field->name + " has a value that is unknown: " +
                         std::string(limits::cut(value, limits::kNumberBytes));
    }
}

}  // namespace host
