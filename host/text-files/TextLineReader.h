#pragma once

#include <cstddef>
#include <istream>
#include <string>

namespace host {

/// Reads a text file line by line and counts the lines. One thread at a time; the stream is borrowed.
class TextLineReader {
public:
    /// A longer line is cut there; only embedded pictures make such lines.
    static constexpr std::size_t kMaxBytes = 1024U * 1024U;

    explicit TextLineReader(std::istream& stream) : m_stream(stream) {}

    /// Reads the next line, without the line feed and a carriage return before it, and without the byte order
    /// mark of UTF-8 at the beginning of the file. False at the end.
    [[nodiscard]] bool next(std::string& line);
    /// Makes the next call of `next` return this line again.
    void putBack(std::string line);

    /// The number of the line that was read last, from 1 on.
    [[nodiscard]] std::size_t number() const noexcept { return m_number; }

private:
    bool read(std::string& line);

    std::istream& m_stream;
    std::string m_putBack;
    bool m_hasPutBack = false;
    std::size_t m_number = 0;
};

}  // namespace host
