#include "host/csta-wire/NameSpaces.h"

namespace host {

std::string cstaNameSpace(std::string_view edition) {
    const std::string_view authority =
        edition == "ed2" ? "http://www.ecma.ch/standards/" : "http://www.ecma-international.org/standards/";
    return std::string(authority).append("ecma-323/csta/").append(edition);
}

bool isCstaEdition(std::string_view edition) noexcept {
    return edition.size() == 3 && edition.substr(0, 2) == "ed" && edition[2] >= '2' && edition[2] <= '6';
}

}  // namespace host
