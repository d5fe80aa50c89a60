#include "platform/journal-library/ItemReader.h"

#include <list>
#include <string>

#include "platform/journal-library/XmlNames.h"

namespace journalxml {
namespace {

// Sets only the fields that the element names correctly. Requires: the object has its defaults.
struct FieldReader {
    const pugi::xml_node& element;

    template <typename Part, typename PartFields>
    void operator()(Part& part, PartFields) const {
        for (const auto& field : PartFields::kTexts) {
            if (const pugi::xml_node child = childNamed(element, field.name)) {
                (part.*field.set)(textOf(child));
            }
        }
        for (const auto& field : PartFields::kFlags) {
            bool value = false;
            if (readBool(textOfChild(element, field.name), value)) {
                (part.*field.set)(value);
            }
        }
        for (const auto& field : PartFields::kNumbers) {
            std::int32_t value = 0;
            if (readNumber(textOfChild(element, field.name), value)) {
                field.set(part, value);
            }
        }
    }
};

template <typename Info>
void readOccurrences(const pugi::xml_node& entry, std::list<Info>& occurrences) {
    for (auto node = childNamed(entry, kOccurrence); node; node = nextNamed(node, kOccurrence)) {
        forEachPart(occurrences.emplace_back(), FieldReader{node});
    }
}

template <typename Item>
void read(const pugi::xml_node& entry, Item& item) {
    item = Item();
    forEachPart(item, FieldReader{entry});
    if constexpr (kHasOccurrences<Item>) {
        auto occurrences = occurrencesOf(item);
        readOccurrences(entry, occurrences);
        setOccurrences(item, occurrences);
    }
}

}  // namespace

void readItem(const pugi::xml_node& entry, MissedCallItem& item) {
    read(entry, item);
}

void readItem(const pugi::xml_node& entry, DialledCallItem& item) {
    read(entry, item);
}

void readItem(const pugi::xml_node& entry, ReceivedCallItem& item) {
    read(entry, item);
}

void readItem(const pugi::xml_node& entry, ForwardedCallItem& item) {
    read(entry, item);
}

void readItem(const pugi::xml_node& entry, CallBackItem& item) {
    read(entry, item);
}

void readItem(const pugi::xml_node& entry, Contact& contact) {
    read(entry, contact);
    contact.setContactSource(contactSourceNamed(textOfChild(entry, kContactSource)));
    const pugi::xml_node records = childNamed(entry, kCallRecords);
    for (auto node = childNamed(records, kCallRecord); node; node = nextNamed(node, kCallRecord)) {
        contact.addCallRecord({textOfChild(node, "UniqueId"), textOfChild(node, kTypeField)});
    }
}

}  // namespace journalxml
