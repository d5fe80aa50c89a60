#include "host/csta-wire/WireDocument.h"

#include <algorithm>
#include <cctype>
#include <utility>

#include "host/csta-wire/Frame.h"
#include "host/csta-wire/XmlText.h"
#include "host/limits/TextLimits.h"

namespace host {

namespace {

/// The encoding in the XML declaration, in lower case; empty if there is none.
std::string declaredEncoding(std::string_view xml) {
    if (xml.substr(0, 5) != "<?xml") {
        return {};
    }
    const std::string_view declaration = xml.substr(0, xml.find("?>"));
    const std::size_t key = declaration.find("encoding");
    const std::size_t open = key == std::string_view::npos ? key : declaration.find_first_of("\"'", key);
    if (open == std::string_view::npos) {
        return {};
    }
    const std::string_view rest = declaration.substr(open + 1);
    std::string name(rest.substr(0, rest.find(declaration[open])));
    std::transform(name.begin(), name.end(), name.begin(),
                   [](char c) { return static_cast<char>(std::tolower(static_cast<unsigned char>(c))); });
    return name;
}

enum class Encoding { eUtf8, eLatin1, eUnknown };

Encoding encodingOf(std::string_view xml) {
    const std::string name = declaredEncoding(xml);
    if (name.empty() || name == "utf-8" || name == "utf8" || name == "us-ascii" || name == "ascii") {
        return Encoding::eUtf8;
    }
    return name == "iso-8859-1" || name == "latin1" || name == "windows-1252" ? Encoding::eLatin1
                                                                              : Encoding::eUnknown;
}

bool isDeeperThan(pugi::xml_node top, std::size_t limit) {
    std::size_t depth = 0;
    pugi::xml_node node = top;
    while (node) {
        if (node.first_child()) {
            node = node.first_child();
            if (++depth > limit) {
                return true;
            }
            continue;
        }
        while (node != top && !node.next_sibling()) {
            node = node.parent();
            --depth;
        }
        if (node == top) {
            return false;
        }
        node = node.next_sibling();
    }
    return false;
}

}  // namespace

MessageKind messageKindOf(std::string_view rootName) noexcept {
    if (rootName.ends_with("Event")) {
        return MessageKind::eEvent;
    }
    if (rootName.ends_with("Response")) {
        return MessageKind::eResponse;
    }
    if (rootName == "CSTAErrorCode") {
        return MessageKind::eError;
    }
    if (rootName == "ApplicationSessionTerminated") {
        return MessageKind::eNotice;
    }
    // All requests of the standard begin with a capital letter.
    const bool capital = !rootName.empty() && rootName.front() >= 'A' && rootName.front() <= 'Z';
    return capital ? MessageKind::eRequest : MessageKind::eForeign;
}

std::optional<WireDocument> WireDocument::parse(std::string_view xml, std::string& fault) {
    const auto refuse = [&fault](const char* reason) {
        fault = reason;
        return std::nullopt;
    };
    if (xml.size() > Frame::kMaxXmlBytes) {
        return refuse("the text is too long");
    }
    if (xml.substr(0, 3) == "\xEF\xBB\xBF") {
        xml.remove_prefix(3);
    }
    xml = trimmed(xml);
    const Encoding encoding = encodingOf(xml);
    if (encoding == Encoding::eUnknown) {
        return refuse("the encoding of the text is unknown");
    }
    std::string text;
    if (encoding == Encoding::eLatin1) {
        xml = text = utf8FromLatin1(xml);
    }
    WireDocument document;
    if (std::optional<std::string> permitted = withoutForbiddenCharacters(xml)) {
        document.m_hasReplacements = true;
        xml = text = std::move(*permitted);
    }
    if (!isXmlUtf8(xml)) {
        xml = text = utf8FromLatin1(xml);
    }

    document.m_document = std::make_unique<pugi::xml_document>();
    const pugi::xml_parse_result result = document.m_document->load_buffer(
        xml.data(), xml.size(), pugi::parse_default | pugi::parse_trim_pcdata, pugi::encoding_utf8);
    if (!result) {
        return refuse("the text is not XML");
    }
    if (isDeeperThan(document.m_document->root(), kMaxDepth)) {
        return refuse("the text is nested too deeply");
    }
    return document;
}

std::string_view WireDocument::name() const {
    return localName(root());
}

std::string_view localName(pugi::xml_node node) {
    return localPart(node.name());
}

pugi::xml_node childNamed(pugi::xml_node parent, std::string_view name) {
    return parent.find_child([name](pugi::xml_node child) { return localName(child) == name; });
}

std::string childText(pugi::xml_node parent, std::string_view name) {
    return std::string(limits::cut(trimmed(childNamed(parent, name).text().get()), limits::kNameBytes));
}

std::string firstText(pugi::xml_node node) {
    if (const std::string_view own = trimmed(node.text().get()); !own.empty()) {
        return std::string(own);
    }
    const pugi::xml_node found = node.find_node([](pugi::xml_node inner) {
        return inner.type() == pugi::node_element && !trimmed(inner.text().get()).empty();
    });
    return std::string(trimmed(found.text().get()));
}

bool isTrue(std::string_view text) noexcept {
    return text == "true" || text == "1";
}

}  // namespace host
