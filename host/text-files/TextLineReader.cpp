#include "host/text-files/TextLineReader.h"

#include <utility>

namespace host {

bool TextLineReader::next(std::string& line) {
    if (m_hasPutBack) {
        m_hasPutBack = false;
        line = std::move(m_putBack);
    } else if (!read(line)) {
        return false;
    }
    ++m_number;
    return true;
}

void TextLineReader::putBack(std::string line) {
    m_putBack = std::move(line);
    m_hasPutBack = true;
    --m_number;
}

bool TextLineReader::read(std::string& line) {
    using Traits = std::istream::traits_type;
    std::streambuf& buffer = *m_stream.rdbuf();
    line.clear();
    Traits::int_type next = buffer.sbumpc();
    if (Traits::eq_int_type(next, Traits::eof())) {
        return false;
    }
    for (; !Traits::eq_int_type(next, Traits::eof()) && next != '\n' && next != '\r';
         next = buffer.sbumpc()) {
        if (line.size() < kMaxBytes) {
            line += Traits::to_char_type(next);
        }
    }
    if (next == '\r' && buffer.sgetc() == '\n') {
        buffer.sbumpc();
    }
    if (m_number == 0 && line.compare(0, 3, "\xEF\xBB\xBF") == 0) {
        line.erase(0, 3);
    }
    return true;
}

}  // namespace host
