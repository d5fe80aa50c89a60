#pragma once

#include "platform/framework/ProtocolAdapter.h"

namespace host {

/// The text protocol "opera_text", which encodes a `Method` as text.
///
///     request getContactList client-7
///     in filter Ann%20M
///     out contactList <Entry>
///
/// The first text line holds the kind (`request`, `response` or `notification`), the name and the source.
/// Each further text line holds one string parameter: its kind (`in` or `out`), its name and its value.
/// Parameters keep their order. One blank separates the three fields, one line feed separates the text lines,
/// and the last one has no line feed. In a field, every byte up to 0x20, 0x7F and `%` itself is written as
/// `%` and two hexadecimal digits (upper case; the decoder accepts both cases). A field may be empty and may
/// hold any bytes.
///
/// The journal's own requests and observer messages are XML documents, which this protocol carries unchanged.
/// Only invokers that work with `Method` objects use the adapter.
///
/// Stateless; any thread may call.
class OperaTextAdapter final : public ProtocolAdapter {
public:
    static constexpr const char* kName = "opera_text";

    [[nodiscard]] bool decode(const std::string& text, Method& method) const override;
    [[nodiscard]] std::string encode(const Method& method) const override;
};

}  // namespace host
