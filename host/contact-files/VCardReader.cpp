#include "host/contact-files/VCardReader.h"

#include <algorithm>
#include <utility>

#include "host/text-files/FileText.h"

namespace host {
namespace {

/// Pictures are longer, but are skipped anyway.
constexpr std::size_t kMaxPropertyBytes = 16U * 1024U;

bool isBegin(const std::string& line) {
    return upper(stripped(line)) == "BEGIN:VCARD";
}

bool isEnd(const std::string& line) {
    return upper(stripped(line)) == "END:VCARD";
}

bool isFolded(const std::string& line) {
    return !line.empty() && (line.front() == ' ' || line.front() == '\t');
}

ContactRecord refused(std::size_t line, const char* reason) {
    ContactRecord record;
    record.line = line;
    record.refusal = reason;
    return record;
}

}  // namespace

std::optional<ContactRecord> VCardReader::next() {
    if (std::exchange(m_begun, false)) {
        return readCard();
    }
    std::string line;
    while (nextUnfolded(line)) {
        if (isBegin(line)) {
            return readCard();
        }
        if (!stripped(line).empty()) {
            return skipStrayLines();
        }
    }
    return std::nullopt;
}

bool VCardReader::nextUnfolded(std::string& line) {
    if (!m_lines.next(line)) {
        return false;
    }
    m_begin = m_lines.number();
    std::string more;
    while (m_lines.next(more)) {
        if (!isFolded(more)) {
            m_lines.putBack(std::move(more));
            break;
        }
        line.append(more, 1);
        line.resize(std::min(line.size(), kMaxPropertyBytes));
    }
    line.resize(std::min(line.size(), kMaxPropertyBytes));
    return true;
}

ContactRecord VCardReader::readCard() {
    const std::size_t begin = m_begin;
    VCardContact card;
    std::string line;
    while (nextUnfolded(line)) {
        if (isEnd(line)) {
            return card.finish(begin);
        }
        if (isBegin(line)) {
            m_begun = true;
            return refused(begin, "it has no END:VCARD");
        }
        if (const std::optional<VCardProperty> property = VCardProperty::parse(line)) {
            card.take(*property);
        }
    }
    return refused(begin, "it has no END:VCARD");
}

ContactRecord VCardReader::skipStrayLines() {
    const std::size_t begin = m_begin;
    std::string line;
    while (nextUnfolded(line)) {
        if (isBegin(line)) {
            m_begun = true;
            break;
        }
    }
    return refused(begin, "what stands here belongs to no card");
}

}  // namespace host
