#pragma once

#include <set>
#include <string>
#include <string_view>
#include <utility>

#include <pugixml.hpp>

namespace host {

class MessageWriter;

/// A monitor filter as sent by a client: the members that suppress their events. A plain value.
class WireFilter {
public:
    /// `element` contains the groups. A null node is a filter that suppresses no event.
    [[nodiscard]] static WireFilter read(pugi::xml_node element);

    /// Applies the members of `change`. The other members stay unchanged.
    void apply(pugi::xml_node change);
    [[nodiscard]] bool suppresses(std::string_view group, std::string_view member) const;
    [[nodiscard]] bool empty() const noexcept { return m_suppressed.empty(); }
    /// Writes the groups into the open element.
    void write(MessageWriter& writer) const;

private:
    std::set<std::pair<std::string, std::string>, std::less<>> m_suppressed;
};

}  // namespace host
