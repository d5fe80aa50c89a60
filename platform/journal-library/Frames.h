#pragma once

#include <string>

/// The outermost elements of the texts that remote clients and observers exchange with the journal. Internal
/// to this library.
namespace journalxml {

inline constexpr const char* kXmlDeclaration = R"(<?xml version="1.0" encoding="utf-8"?>)";

struct Frame {
    const char* opening;
    const char* closing;
};

inline constexpr Frame kRequestFrame{"<JournalRequest>", "</JournalRequest>"};
inline constexpr Frame kResponseFrame{"<JournalResponse>", "</JournalResponse>"};
inline constexpr Frame kNotificationFrame{"<JournalNotification>", "</JournalNotification>"};

inline constexpr const char* kResult = "Result";
inline constexpr const char* kEvent = "Event";
inline constexpr const char* kCount = "Count";
inline constexpr const char* kAction = "Action";

[[nodiscard]] inline std::string opening(const Frame& frame) {
    return std::string(kXmlDeclaration) + frame.opening;
}

[[nodiscard]] inline std::string framed(const Frame& frame, const std::string& body) {
    return opening(frame) + body + frame.closing;
}

}  // namespace journalxml
