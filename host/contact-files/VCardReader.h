#pragma once

#include <cstddef>
#include <istream>
#include <optional>
#include <string>

#include "host/contact-files/ContactReader.h"
#include "host/contact-files/TextLineReader.h"
#include "host/contact-files/VCardContact.h"

namespace host {

/// Reads the cards of a vCard file, versions 3.0 (RFC 2426) and 4.0 (RFC 6350).
class VCardReader final : public ContactReader {
public:
    explicit VCardReader(std::istream& stream) : m_lines(stream) {}

    [[nodiscard]] std::optional<ContactRecord> next() override;

private:
    /// The next property line, put together from the lines that it is folded into; cut where it is longer than any that is
    /// of use here.
    bool nextUnfolded(std::string& line);
    ContactRecord readCard();
    ContactRecord skipStrayLines();

    TextLineReader m_lines;
    /// Where the line that was taken last begins.
    std::size_t m_begin = 0;
    /// Whether that line began a card that is still to be read.
    bool m_begun = false;
};

}  // namespace host
