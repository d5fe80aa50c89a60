#pragma once

namespace journal {

/// Whether the phone runs the Crest user interface, which shows forwarded outgoing calls as forwarded. Any
/// thread.
[[nodiscard]] bool isUsingCrestUX();

}  // namespace journal
