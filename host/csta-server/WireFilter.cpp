#include "host/csta-server/WireFilter.h"

#include "host/csta-wire/MessageWriter.h"
#include "host/csta-wire/WireDocument.h"
#include "host/csta-wire/XmlText.h"

namespace host {

WireFilter WireFilter::read(pugi::xml_node element) {
    WireFilter filter;
    filter.apply(element);
    return filter;
}

void WireFilter::apply(pugi::xml_node change) {
    for (const pugi::xml_node group : change.children()) {
        for (const pugi::xml_node member : group.children()) {
            std::pair<std::string, std::string> key{localName(group), localName(member)};
            if (isTrue(trimmed(member.text().get()))) {
                m_suppressed.insert(std::move(key));
            } else {
                m_suppressed.erase(key);
            }
        }
    }
}

bool WireFilter::suppresses(std::string_view group, std::string_view member) const {
    return m_suppressed.contains(std::pair{std::string(group), std::string(member)});
}

void WireFilter::write(MessageWriter& writer) const {
    std::string_view open;
    for (const auto& [group, member] : m_suppressed) {
        if (group != open) {
            if (!open.empty()) {
                writer.close();
            }
            writer.open(group);
            open = group;
        }
        writer.flag(member, true);
    }
    if (!open.empty()) {
        writer.close();
    }
}

}  // namespace host
