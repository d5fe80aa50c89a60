#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace host {

/// Writes one CSTA message element by element: XML declaration, default name space on the root, no prefixes, no white
/// space. The caller keeps the order of the schema. Names of elements are ours and are not checked; texts
/// are escaped, whatever they hold.
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

    /// Closes what is open and gives the message out; the writer is then spent.
    [[nodiscard]] std::string finish();

private:
    std::string m_xml;
    std::vector<std::string> m_open;
};

}  // namespace host
