#pragma once

#include "platform/framework/ProtocolAdapter.h"

namespace host {

/// The text protocol "opera_text": how a `Method` stands in a message.
///
///     request getContactList client-7
///     in filter Ann%20M
///     out contactList <Entry>
///
/// The first line is the kind (`request`, `response` or `notification`), the name and the source; each further line is
/// one string parameter: its kind (`in` or `out`), its name and its value, in their order. One blank parts the three
/// fields, one line feed the lines; the last line has none. In a field, every byte up to 0x20, 0x7F and `%` itself is
/// written as `%` and two hexadecimal digits (upper case; both are read), everything else as it is, so a field
/// may be empty and may hold any bytes.
///
/// The journal's own requests and observer messages are XML documents, and travel in this protocol as they are: an
/// adapter is asked only by an invoker that works with `Method` objects.
class OperaTextAdapter final : public ProtocolAdapter {
public:
    static constexpr const char* kName = "opera_text";

    [[nodiscard]] bool decode(const std::string& text, Method& method) const override;
    [[nodiscard]] std::string encode(const Method& method) const override;
};

}  // namespace host
