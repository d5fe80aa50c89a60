#pragma once

#include <string>

/// Small text helpers that the phone's services and their clients share. Pure functions; any thread may
/// call.
class ClientUtils {
public:
    ClientUtils() = delete;

    /// Makes any bytes into text that may stand in an XML 1.0 element or in a quoted attribute, as valid
    /// UTF-8.
    ///
    /// `&`, `<`, `>`, `"` and `'` become `&amp;`, `&lt;`, `&gt;`, `&quot;` and `&apos;`; a carriage return
    /// becomes `&#13;`, because a parser would otherwise turn it into a line feed. What XML cannot carry is
    /// not lost: each byte that is not part of valid UTF-8, or is part of a character that XML forbids (NUL
    /// and the other control characters except tab, line feed and carriage return, surrogates, U+FFFE,
    /// U+FFFF), becomes the one private-use character U+EE00 + byte. So that this can be told from a text
    /// that really holds such a character, each byte of a genuine U+EE00 to U+EEFF is written in the same
    /// way. `unescapeText` is the way back.
    [[nodiscard]] static std::string escapeXMLString(const std::string& text);

    /// The way back, for text that an XML parser has already read (references resolved): U+EE00 to U+EEFF
    /// become the bytes they stand for, everything else stays. For any bytes, parsing and `unescapeText`
    /// undo `escapeXMLString`.
    [[nodiscard]] static std::string unescapeText(const std::string& text);

    /// Decimal text.
    [[nodiscard]] static std::string itos(unsigned value);
    [[nodiscard]] static std::string itos(int value);

    /// Whether `text` is exactly one of "true", "false", "1" and "0": no blanks, no capitals.
    [[nodiscard]] static bool isStringBool(const std::string& text);
    /// True for "true" and "1", false for everything else, so ask `isStringBool` first where that matters.
    [[nodiscard]] static bool stob(const std::string& text);
};
