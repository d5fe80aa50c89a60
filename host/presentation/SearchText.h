#pragma once

#include <string>
#include <string_view>

namespace host {

/// What somebody looks for, made ready to be compared with many items. Capital and small letters are alike, and so are letters
/// with and without accents, in one piece or in two ("muller" finds "Müller"). Numbers are compared without what they
/// are written apart with ("21155" finds "+49 211 55-66"). White space around the text counts for nothing.
///
/// A plain value; any thread may call. Bytes that are no UTF-8 are compared as they are.
class SearchText {
public:
    explicit SearchText(std::string_view text);

    /// An empty text is in everything.
    [[nodiscard]] bool isEmpty() const noexcept { return m_text.empty(); }
    [[nodiscard]] bool isIn(std::string_view text) const;
    [[nodiscard]] bool isInNumber(std::string_view number) const;

private:
    std::string m_text;
    /// Empty when the text is no part of any number.
    std::string m_number;
};

}  // namespace host
