#include "apps/calljournal/client/CallUpload.h"

#include <nlohmann/json.hpp>

#include "host/api-client/ApiClient.h"
#include "host/history/CallJson.h"
#include "host/presentation/ItemJson.h"

namespace calljournal {
namespace {

constexpr std::size_t kUsualCalls = 400;
constexpr std::size_t kUsualBytes = 150U * 1024U;
/// A request may have 250 KiB.
constexpr std::size_t kMaxBytes = 240U * 1024U;

}  // namespace

void CallUpload::add(std::size_t row, const host::Call& call) {
    const std::string text = host::jsonText(host::callJson(call));
    const bool isFull = m_rows.size() >= kUsualCalls || m_calls.size() >= kUsualBytes;
    if ((isFull && call.start != m_lastStart) || m_calls.size() + text.size() > kMaxBytes) {
        send(false);
    }
    m_calls.append(m_calls.empty() ? "" : ",").append(text);
    m_rows.push_back(row);
    m_lastStart = call.start;
}

void CallUpload::finish() {
    send(true);
}

void CallUpload::send(bool isLast) {
    const std::string body = std::string(R"({"more":)") + (isLast ? "false" : "true") + R"(,"unviewed":)" +
                             (m_unviewed ? "true" : "false") + R"(,"import":)" + m_import + R"(,"calls":[)" +
                             m_calls + "]}";
    const nlohmann::ordered_json done = m_client.post({"calls", "import"}, body, "application/json");
    m_import = done.at("import").dump();
    m_counts.imported += done.at("imported").get<std::size_t>();
    m_counts.known += done.at("known").get<std::size_t>();
    for (const auto& each : done.at("failed")) {
        m_refused(m_rows.at(each.at("row").get<std::size_t>() - 1), each.at("error").get<std::string>());
    }
    m_calls.clear();
    m_rows.clear();
}

}  // namespace calljournal
