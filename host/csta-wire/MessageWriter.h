#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace host {

/// Writes one CSTA message element by element: XML declaration, default name space on the root, no prefixes,
/// no white space. The caller is responsible for valid element names in the order of the schema. Any text is
/// escaped.
class MessageWriter {
public:
    MessageWriter(std::string_view root, std::string_view nameSpace);

    MessageWriter& open(std::string_view name);
    MessageWriter& close();
    /// An element with a text.
    MessageWriter& text(std::string_view name, std::string_view value);
    MessageWriter& flag(std::string_view name, bool value);
    /// An element without content.
    MessageWriter& empty(std::string_view name);

    /// Closes the open elements and returns the message. Do not use the writer afterwards.
    [[nodiscard]] std::string finish();

private:
    std::string m_xml;
    std::vector<std::string> m_open;
};

}  // namespace host
