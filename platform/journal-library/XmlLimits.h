#pragma once

#include <cstddef>

/// What a text may be before anybody parses it. The limits stand far above everything that the journal
/// writes, and keep what a hostile text can cost within bounds: time linear in its length, and memory a
/// small multiple of it.
namespace journalxml {

/// List documents, and requests and answers of the database. The builders stop adding entries before they
/// exceed it, so what was built can be read.
inline constexpr std::size_t kMaxDocumentBytes = 16U * 1024U * 1024U;
/// Requests of remote clients.
inline constexpr std::size_t kMaxMessageBytes = 1024U * 1024U;
/// Markup (tags, comments and the like) in one text; bounds the parser's memory.
inline constexpr std::size_t kMaxMarkups = 1000U * 1000U;
/// Elements within elements. The deepest text of the vocabulary has 5.
inline constexpr std::size_t kMaxDepth = 16;

}  // namespace journalxml
