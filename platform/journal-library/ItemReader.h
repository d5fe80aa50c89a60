#pragma once

#include <pugixml.hpp>

#include "journal-items/CallBackItem.h"
#include "journal-items/Contact.h"
#include "journal-items/DialledCallItem.h"
#include "journal-items/ForwardedCallItem.h"
#include "journal-items/MissedCallItem.h"
#include "journal-items/ReceivedCallItem.h"
#include "platform/journal-library/ItemFields.h"
#include "platform/journal-library/XmlMessage.h"

/// Items from XML. Pure functions; only this library's sources include this file.
namespace journalxml {

/// Reads the content of an `ENTRY`, whatever its type. Missing fields get their defaults.
void readItem(const pugi::xml_node& entry, MissedCallItem& item);
void readItem(const pugi::xml_node& entry, DialledCallItem& item);
void readItem(const pugi::xml_node& entry, ReceivedCallItem& item);
void readItem(const pugi::xml_node& entry, ForwardedCallItem& item);
void readItem(const pugi::xml_node& entry, CallBackItem& item);
void readItem(const pugi::xml_node& entry, Contact& contact);

/// Whether an entry may be read as an `Item`: it says that it is one, or does not say what it is.
template <typename Item>
[[nodiscard]] bool isEntryOf(const pugi::xml_node& entry) {
    const pugi::xml_node type = childNamed(entry, kTypeField);
    return !type || textOf(type) == kTypeOf<Item>;
}

}  // namespace journalxml
