#include "host/http/events/AllLinesFeed.h"

#include <nlohmann/json.hpp>
#include <utility>

#include "host/presentation/ItemJson.h"

namespace host {

namespace {

// Several events of each line, when calls of 10,000 lines end at the same moment.
constexpr EventRing::Limits kLimits{.events = 65'536, .bytes = 64U * 1024U * 1024U};

}  // namespace

AllLinesFeed::AllLinesFeed(EventStreams::PostLater postLater)
    : m_streams(std::move(postLater), kLimits, [this] { return m_hasGap.exchange(false); }) {}

std::shared_ptr<StreamBody> AllLinesFeed::open(const std::string& lastEventId,
                                               std::function<bool()> mayGoOn) {
    if (!mayBeRead()) {
        m_hasGap = true;
    }
    return m_streams.open(lastEventId, std::move(mayGoOn), nullptr);
}

void AllLinesFeed::append(const std::string& line, const char* event, const std::string& data) {
    if (!mayBeRead()) {
        m_hasGap = true;
        return;
    }
    const std::string members = data.substr(1);
    m_streams.append(event, "{\"line\":" + jsonText(line) + (members == "}" ? std::string() : ",") + members);
    m_streams.wakeSoon();
}

}  // namespace host
