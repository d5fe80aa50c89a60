#include "host/search/SearchText.h"

#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <algorithm>

#include "platform/client-utils/Utf8.h"

namespace host {
namespace {

constexpr const char* kBlanks = " \t\n\v\f\r";
/// The separators within numbers.
constexpr std::string_view kApart = " \t\n\v\f\r()/.-";
/// A byte that is no UTF-8 becomes a private-use character, which names do not contain.
constexpr UChar32 kFirstStrayByte = 0xEE00;

std::string_view trimmed(std::string_view text) {
    const std::size_t begin = text.find_first_not_of(kBlanks);
    return begin == std::string_view::npos ? std::string_view()
                                           : text.substr(begin, text.find_last_not_of(kBlanks) + 1 - begin);
}

icu::UnicodeString charactersOf(std::string_view text) {
    icu::UnicodeString characters;
    for (std::size_t at = 0; at < text.size();) {
        const utf8::Step step = utf8::next(text, at);
        characters.append(step.character == utf8::kInvalid
                              ? kFirstStrayByte + static_cast<unsigned char>(text[at])
                              : static_cast<UChar32>(step.character));
        at += step.length;
    }
    return characters;
}

bool isMark(UChar32 character) {
    const auto type = u_charType(character);
    return type == U_NON_SPACING_MARK || type == U_ENCLOSING_MARK || type == U_COMBINING_SPACING_MARK;
}

std::string withoutMarks(const icu::UnicodeString& characters) {
    std::string text;
    for (std::int32_t at = 0; at < characters.length(); at = characters.moveIndex32(at, 1)) {
        const UChar32 character = characters.char32At(at);
        if (!isMark(character)) {
            utf8::append(text, static_cast<std::uint32_t>(character));
        }
    }
    return text;
}

std::string folded(std::string_view text) {
    std::string small(text);
    if (std::any_of(text.begin(), text.end(), [](char each) { return (each & '\x80') != 0; })) {
        UErrorCode error = U_ZERO_ERROR;
        const icu::Normalizer2* const decomposition = icu::Normalizer2::getNFKDInstance(error);
        if (U_SUCCESS(error)) {
            return withoutMarks(decomposition->normalize(charactersOf(text), error).foldCase());
        }
    }
    std::transform(small.begin(), small.end(), small.begin(), [](char each) {
        return each >= 'A' && each <= 'Z' ? static_cast<char>(each + 32) : each;
    });
    return small;
}

std::string joined(std::string number) {
    std::erase_if(number, [](char each) { return kApart.find(each) != std::string_view::npos; });
    return number;
}

}  // namespace

SearchText::SearchText(std::string_view text) : m_text(folded(trimmed(text))), m_number(joined(m_text)) {}

std::string SearchText::searchable(std::string_view name, std::string_view number) {
    return folded(name) + '\x1F' + joined(folded(number));
}

bool SearchText::isIn(std::string_view text) const {
    return folded(text).find(m_text) != std::string::npos;
}

bool SearchText::isInNumber(std::string_view number) const {
    return isEmpty() || (!m_number.empty() && joined(folded(number)).find(m_number) != std::string::npos);
}

}  // namespace host
