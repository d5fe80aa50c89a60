#pragma once

#include <string>
#include <vector>

#include "tests/reliability/support/Dice.h"
#include "tests/reliability/wire/SampleMessages.h"

namespace reliability {

/// The bytes of a frame that is wrong in one to three ways: its XML is damaged, spliced or replaced by a
/// hostile text; its header claims another length or id; it is cut short; garbage is before it.
[[nodiscard]] std::string mutatedFrame(const std::vector<SampleMessage>& samples, Dice& dice);

}  // namespace reliability
