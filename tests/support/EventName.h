#pragma once

#include <string>
#include <typeinfo>

#include "platform/csta/CSTAEvent.h"

namespace journaltest {

/// The name of an event's class without prefix and suffix: "Delivered".
inline std::string nameOf(const CSTAEvent& event) {
    const std::string name = typeid(event).name();
    const std::string own = name.substr(name.find("CSTA") + 4);
    return own.substr(0, own.rfind("Event"));
}

}  // namespace journaltest
