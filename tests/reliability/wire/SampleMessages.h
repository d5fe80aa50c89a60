#pragma once

#include <string>
#include <vector>

namespace reliability {

/// A correct message of the switch. A plain value.
struct SampleMessage {
    int invokeId = 0;
    std::string xml;
};

/// One message of each kind: the events, the requests and the responses that leave the monitor on.
[[nodiscard]] std::vector<SampleMessage> sampleMessages(const std::string& crossRefId);

/// Messages that end the monitor, the session or the calls.
[[nodiscard]] std::vector<SampleMessage> disturbingMessages(const std::string& crossRefId);

/// Texts that are no messages: entities, length, encodings, wrong roots.
[[nodiscard]] const std::vector<std::string>& hostileTexts();

/// Texts that the parser must refuse: too deep, not closed, zero characters, an unknown encoding.
[[nodiscard]] const std::vector<std::string>& refusedTexts();

}  // namespace reliability
