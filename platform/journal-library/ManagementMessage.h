#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The second vocabulary of remote clients: reading and writing the settings of the phone and of the journal. Every
/// text, both ways. Pure functions; any thread may call; nothing here throws on any bytes.
namespace journalxml {

/// The outermost element of every request of the management, by which it is told from the journal's own requests.
inline constexpr const char* kManagementRequest = "ManagementRequest";

/// One key, as it stands. A plain value.
struct Setting {
    std::string key;
    /// Whether the journal keeps it ("missed-logging"), or the phone ("system-identifier").
    bool ofJournal = false;
    /// Nothing: the phone knows the key, and nobody has set it.
    std::optional<std::string> value;

    [[nodiscard]] bool operator==(const Setting&) const = default;
};

/// A key that was not read or not changed, with the management's number of the reason and its text.
struct RefusedKey {
    std::string key;
    int code = 0;
    std::string text;

    [[nodiscard]] bool operator==(const RefusedKey&) const = default;
};

struct ManagementRequest {
    /// Empty: all keys, which can be read only.
    std::string key;
    /// What the key is set to; nothing: the request reads.
    std::optional<std::string> value;
};

/// What a read found, or what a write has left; and the refusal.
struct ManagementResponse {
    std::vector<Setting> settings;
    std::optional<RefusedKey> refused;
};

[[nodiscard]] std::string buildManagementRequest(const ManagementRequest& request);
/// Nothing for a text that is beyond the bound of requests, cannot be read, or asks for nothing that there is.
[[nodiscard]] std::optional<ManagementRequest> parseManagementRequest(std::string_view text);

[[nodiscard]] std::string buildManagementResponse(const ManagementResponse& answer);
/// Nothing for a failure, and for any text that is no answer to a settings request.
[[nodiscard]] std::optional<ManagementResponse> parseManagementResponse(std::string_view text);

}  // namespace journalxml
