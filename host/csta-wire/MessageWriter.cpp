#include "host/csta-wire/MessageWriter.h"

#include <utility>

#include "host/csta-wire/XmlText.h"

namespace host {

MessageWriter::MessageWriter(std::string_view root, std::string_view nameSpace)
    : m_xml("<?xml version=\"1.0\" encoding=\"UTF-8\"?>") {
    m_xml.append("<").append(root).append(" xmlns=\"").append(escapedXml(nameSpace)).append("\">");
    m_open.emplace_back(root);
}

MessageWriter& MessageWriter::open(std::string_view name) {
    m_xml.append("<").append(name).append(">");
    m_open.emplace_back(name);
    return *this;
}

MessageWriter& MessageWriter::close() {
    m_xml.append("</").append(m_open.back()).append(">");
    m_open.pop_back();
    return *this;
}

MessageWriter& MessageWriter::text(std::string_view name, std::string_view value) {
    open(name);
    m_xml.append(escapedXml(value));
    return close();
}

MessageWriter& MessageWriter::flag(std::string_view name, bool value) {
    return text(name, value ? "true" : "false");
}

MessageWriter& MessageWriter::empty(std::string_view name) {
    m_xml.append("<").append(name).append("/>");
    return *this;
}

std::string MessageWriter::finish() {
    while (!m_open.empty()) {
        close();
    }
    return std::move(m_xml);
}

}  // namespace host
