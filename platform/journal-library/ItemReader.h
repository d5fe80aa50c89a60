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

/// Items from XML. Pure functions; internal to this library.
namespace journalxml {

/// Reads the content of an `ENTRY` of any type. Missing fields get their defaults.
void readItem(const pugi::xml_node& entry, MissedCallItem& item);
void readItem(const pugi::xml_node& entry, DialledCallItem& item);
void readItem(const pugi::xml_node& entry, ReceivedCallItem& item);
void readItem(const pugi::xml_node& entry, ForwardedCallItem& item);
void readItem(const pugi::xml_node& entry, CallBackItem& item);
void readItem(const pugi::xml_node& entry, Contact& contact);

/// True if an entry may be read as an `Item`: its type is that of the item, or it has none.
template <typename Item>
[[nodiscard]] bool isEntryOf(const pugi::xml_node& entry) {
    const pugi::xml_node type = childNamed(entry, kTypeField);
    return !type || textOf(type) == kTypeOf<Item>;
}

}  // namespace journalxml
