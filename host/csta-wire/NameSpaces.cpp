#include "host/csta-wire/NameSpaces.h"

namespace host {

std::string cstaNameSpace(std::string_view edition) {
    const std::string_view authority =
        edition == "ed2" ? "http://www.ecma.ch/standards/" : "http://www.ecma-international.org/standards/";
    return std::string(authority).append("ecma-323/csta/").append(edition);
}

}  // namespace host
