#pragma once

namespace journal {

/// True if the phone runs the Crest user interface, which shows forwarded outgoing calls as forwarded.
/// Thread-safe.
[[nodiscard]] bool isUsingCrestUX();

}  // namespace journal
