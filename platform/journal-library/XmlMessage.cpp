#include "platform/journal-library/XmlMessage.h"

#include <charconv>
#include <cstdint>
#include <cstring>
#include <system_error>

#include "platform/client-utils/ClientUtils.h"
#include "platform/journal-library/XmlScanner.h"

namespace journalxml {
namespace {

// White space is kept everywhere: a name may consist of nothing else.
constexpr unsigned kParseOptions = pugi::parse_cdata | pugi::parse_escapes | pugi::parse_eol |
                                   pugi::parse_wconv_attribute | pugi::parse_ws_pcdata;

pugi::xml_node fromHere(pugi::xml_node node, std::string_view name) noexcept {
    while (node && !isNamed(node, name)) {
        node = node.next_sibling();
    }
    return node;
}

}  // namespace

bool XmlMessage::parse(std::string_view text, std::size_t maxBytes) {
    m_document.reset();
    if (!isSafeXml(text, maxBytes)) {
        return false;
    }
    const auto result = m_document.load_buffer(text.data(), text.size(), kParseOptions, pugi::encoding_utf8);
    if (!result || !root()) {
        m_document.reset();
        return false;
    }
    return true;
}

std::string_view localName(const char* name) noexcept {
    const char* const colon = std::strchr(name, ':');
    return colon == nullptr ? name : colon + 1;
}

bool isNamed(const pugi::xml_node& node, std::string_view name) noexcept {
    return node.type() == pugi::node_element && localName(node.name()) == name;
}

pugi::xml_node childNamed(const pugi::xml_node& parent, std::string_view name) noexcept {
    return fromHere(parent.first_child(), name);
}

pugi::xml_node nextNamed(const pugi::xml_node& node, std::string_view name) noexcept {
    return fromHere(node.next_sibling(), name);
}

std::string textOf(const pugi::xml_node& element) {
    std::string text;
    for (const pugi::xml_node& child : element.children()) {
        if (child.type() == pugi::node_pcdata || child.type() == pugi::node_cdata) {
            text += child.value();
        }
    }
    return ClientUtils::unescapeText(text);
}

std::string textOfChild(const pugi::xml_node& parent, std::string_view name) {
    return textOf(childNamed(parent, name));
}

template <typename Number>
bool readNumber(const std::string& text, Number& value) noexcept {
    Number read = 0;
    const char* const end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, read);
    if (result.ec != std::errc{} || result.ptr != end) {
        return false;
    }
    value = read;
    return true;
}

template bool readNumber(const std::string&, std::int32_t&) noexcept;
template bool readNumber(const std::string&, std::uint32_t&) noexcept;

bool readBool(const std::string& text, bool& value) {
    if (!ClientUtils::isStringBool(text)) {
        return false;
    }
    value = ClientUtils::stob(text);
    return true;
}

}  // namespace journalxml
