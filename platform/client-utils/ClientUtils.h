#pragma once

#include <string>
#include <string_view>

/// Small text helpers that the phone's services and their clients share. Pure functions; any thread may call.
class ClientUtils {
public:
    ClientUtils() = delete;

    /// Converts any bytes to valid UTF-8 text for an XML 1.0 element or a quoted attribute.
    ///
    /// `&`, `<`, `>`, `"` and `'` become `&amp;`, `&lt;`, `&gt;`, `&quot;` and `&apos;`; a carriage return
    /// becomes `&#13;`, because a parser would turn it into a line feed. Bytes that XML cannot carry are
    /// kept: each byte that is not part of valid UTF-8, or is part of a character that XML forbids (NUL and
    /// the other control characters except tab, line feed and carriage return, surrogates, U+FFFE, U+FFFF),
    /// becomes the one private-use character U+EE00 + byte. Each byte of a genuine U+EE00 to U+EEFF is
    /// written in the same way, so the text stays unambiguous. `unescapeText` is the inverse.
    [[nodiscard]] static std::string escapeXMLString(const std::string& text);
    /// Appends it.
    static void appendEscapedXml(std::string& out, std::string_view text);

    /// The inverse, for text whose references an XML parser has resolved: U+EE00 to U+EEFF become the bytes
    /// that they stand for, everything else is kept. For any bytes, parsing and `unescapeText` undo
    /// `escapeXMLString`.
    [[nodiscard]] static std::string unescapeText(const std::string& text);

    /// Decimal text.
    [[nodiscard]] static std::string itos(unsigned value);
    [[nodiscard]] static std::string itos(int value);

    /// True if `text` is exactly "true", "false", "1" or "0": no blanks, no capital letters.
    [[nodiscard]] static bool isStringBool(const std::string& text);
    /// True for "true" and "1", false for any other text; check with `isStringBool` first where that matters.
    [[nodiscard]] static bool stob(const std::string& text);
};
