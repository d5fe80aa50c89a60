#pragma once

#include <cstddef>

/// Limits that a text must meet before it is parsed. They are far above everything that the journal writes,
/// and bound the cost of a hostile text: time linear in its length, memory a small multiple of it.
namespace journalxml {

/// List documents, and requests and responses of the database. The builders stay below this limit, so what
/// they build can be read.
inline constexpr std::size_t kMaxDocumentBytes = 16U * 1024U * 1024U;
/// Requests of remote clients.
inline constexpr std::size_t kMaxMessageBytes = 1024U * 1024U;
/// Markup (tags, comments and the like) in one text; bounds the parser's memory.
inline constexpr std::size_t kMaxMarkups = 1000U * 1000U;
/// Elements within elements. The deepest text of the vocabulary has 5.
inline constexpr std::size_t kMaxDepth = 16;

}  // namespace journalxml
