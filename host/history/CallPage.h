#pragma once

#include <string>
#include <vector>

#include "host/history/Call.h"

namespace host {

/// A page of the history. A plain value.
struct CallPage {
    std::vector<Call> calls;
    /// The cursor of the next page (`CallQuery::cursor`); empty if this is the last one.
    std::string next;
};

}  // namespace host
