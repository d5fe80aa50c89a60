#pragma once

#include <set>
#include <string>
#include <string_view>
#include <utility>

#include <pugixml.hpp>

namespace host {

class MessageWriter;

/// A monitor filter as a client sent it: the members that leave their events out. A plain value.
class WireFilter {
public:
    /// `element` holds the groups; a null node is a filter that leaves nothing out.
    [[nodiscard]] static WireFilter read(pugi::xml_node element);

    /// Takes over what `change` says, and keeps the rest.
    void apply(pugi::xml_node change);
    [[nodiscard]] bool leavesOut(std::string_view group, std::string_view member) const;
    [[nodiscard]] bool empty() const noexcept { return m_leftOut.empty(); }
    /// Writes the groups into the open element.
    void write(MessageWriter& writer) const;

private:
    std::set<std::pair<std::string, std::string>, std::less<>> m_leftOut;
};

}  // namespace host
