#pragma once

#include <string>

/// The XML root elements of the texts that remote clients and observers exchange with the journal. Internal
/// to this library.
namespace journalxml {

inline constexpr const char* kXmlDeclaration = R"(<?xml version="1.0" encoding="utf-8"?>)";

struct RootElement {
    const char* opening;
    const char* closing;
};

inline constexpr RootElement kRequestElement{"<JournalRequest>", "</JournalRequest>"};
inline constexpr RootElement kResponseElement{"<JournalResponse>", "</JournalResponse>"};
inline constexpr RootElement kNotificationElement{"<JournalNotification>", "</JournalNotification>"};

inline constexpr const char* kResult = "Result";
inline constexpr const char* kEvent = "Event";
inline constexpr const char* kCount = "Count";
inline constexpr const char* kAction = "Action";

[[nodiscard]] inline std::string opening(const RootElement& root) {
    return std::string(kXmlDeclaration) + root.opening;
}

[[nodiscard]] inline std::string inRootElement(const RootElement& root, const std::string& body) {
    return opening(root) + body + root.closing;
}

}  // namespace journalxml
