#pragma once

#include <string>
#include <string_view>

namespace host {

/// A search text, prepared for comparison with many items. The comparison ignores case and accents, composed
/// or not ("muller" finds "Müller"). Numbers are compared without separators ("21155" finds "+49 211 55-66").
/// White space around the text is ignored.
///
/// A plain value; any thread may call. Bytes that are no UTF-8 are compared as they are.
class SearchText {
public:
    explicit SearchText(std::string_view text);

    /// An empty text is in every text.
    [[nodiscard]] bool isEmpty() const noexcept { return m_text.empty(); }
    [[nodiscard]] bool isIn(std::string_view text) const;
    [[nodiscard]] bool isInNumber(std::string_view number) const;

    /// The text for a comparison with the name in a stored search text (`searchable`).
    [[nodiscard]] const std::string& text() const noexcept { return m_text; }
    /// The same for the number; empty if the text cannot be part of a number.
    [[nodiscard]] const std::string& number() const noexcept { return m_number; }

    /// The search text that is stored for a name and a number: the folded name, the character U+001F, and the
    /// number without separators.
    [[nodiscard]] static std::string searchable(std::string_view name, std::string_view number);

private:
    std::string m_text;
    /// Empty if the text cannot be part of a number.
    std::string m_number;
};

}  // namespace host
