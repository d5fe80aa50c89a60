#pragma once

#include <cstddef>
#include <istream>
#include <optional>
#include <string>

#include "host/contact-files/ContactReader.h"
#include "host/contact-files/VCardContact.h"
#include "host/text-files/TextLineReader.h"

namespace host {

/// Reads the cards of a vCard file, versions 3.0 (RFC 2426) and 4.0 (RFC 6350).
class VCardReader final : public ContactReader {
public:
    explicit VCardReader(std::istream& stream) : m_lines(stream) {}

    [[nodiscard]] std::optional<ContactRecord> next() override;

private:
    /// Reads the next property and unfolds it; cut beyond the length of any property that is used.
    bool nextUnfolded(std::string& line);
    ContactRecord readCard();
    ContactRecord skipStrayLines();

    TextLineReader m_lines;
    /// The number of the text line in which the last property begins.
    std::size_t m_begin = 0;
    /// True if that property begins a card that is not read yet.
    bool m_begun = false;
};

}  // namespace host
