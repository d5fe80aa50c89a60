#pragma once

#include <string>
#include <string_view>

namespace host {

/// The end of a SIP call. A plain value.
struct CallEnd {
    enum class By {
        eUser,     ///< the own side hung up, cancelled or rejected
        ePeer,     ///< the other side did
        eFailure,  ///< an outgoing call was not answered, because of `cause`
    };

    By by = By::ePeer;
    /// The ECMA-323 value.
    std::string cause = "normalClearing";

    [[nodiscard]] bool operator==(const CallEnd&) const = default;
};

/// Reads the text with which the telephone reports the end of a call: "Connection reset by user", "486 Busy
/// Here".
[[nodiscard]] CallEnd readCallEnd(std::string_view text);

}  // namespace host
