#include "host/history/CallKey.h"

#include <charconv>

namespace host {
namespace {

bool readNumber(std::string_view text, std::int64_t& number) {
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    return error == std::errc{} && stop == end;
}

}  // namespace

std::string cursorAfter(const CallKey& last) {
    return std::to_string(last.start) + '.' + std::to_string(last.id);
}

std::optional<CallKey> keyOfCursor(std::string_view cursor) {
    const std::size_t point = cursor.find('.');
    CallKey key;
    if (point == std::string_view::npos || !readNumber(cursor.substr(0, point), key.start) ||
        !readNumber(cursor.substr(point + 1), key.id)) {
        return std::nullopt;
    }
    return key;
}

}  // namespace host
