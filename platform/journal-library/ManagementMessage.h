#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The messages in which remote clients read and write the settings of the phone and of the journal, both
/// ways. Pure functions; any thread may call; no bytes make them throw.
namespace journalxml {

/// The outermost element of every management request. It distinguishes them from the journal's own requests.
inline constexpr const char* kManagementRequest = "ManagementRequest";

/// One key with its value. A plain value.
struct Setting {
    std::string key;
    /// True if the journal keeps the key ("missed-logging"), false if the phone does ("system-identifier").
    bool ofJournal = false;
    /// `std::nullopt`: the phone has the key, but without a value.
    std::optional<std::string> value;

    [[nodiscard]] bool operator==(const Setting&) const = default;
};

/// A key that could not be read or changed, with the management's error code and text.
struct RefusedKey {
    std::string key;
    int code = 0;
    std::string text;

    [[nodiscard]] bool operator==(const RefusedKey&) const = default;
};

struct ManagementRequest {
    /// Empty: all keys; only a request that reads may be for all.
    std::string key;
    /// The value to set; `std::nullopt`: the request reads.
    std::optional<std::string> value;
};

/// The result of a read, or the values after a write; and the refusal, if there is one.
struct ManagementResponse {
    std::vector<Setting> settings;
    std::optional<RefusedKey> refused;
};

[[nodiscard]] std::string buildManagementRequest(const ManagementRequest& request);
/// Returns `std::nullopt` for a text that is too long, unreadable, or no valid request.
[[nodiscard]] std::optional<ManagementRequest> parseManagementRequest(std::string_view text);

[[nodiscard]] std::string buildManagementResponse(const ManagementResponse& response);
/// Returns `std::nullopt` for a failure and for any text that is no response to a settings request.
[[nodiscard]] std::optional<ManagementResponse> parseManagementResponse(std::string_view text);

}  // namespace journalxml
