#include "platform/journal-library/ItemWriter.h"

#include <string_view>

#include "platform/client-utils/ClientUtils.h"
#include "platform/journal-library/ItemFields.h"
#include "platform/journal-library/XmlNames.h"

namespace journalxml {
namespace {

void appendBegin(std::string& out, std::string_view name) {
    out += '<';
    out += name;
    out += '>';
}

void appendEnd(std::string& out, std::string_view name) {
    out += "</";
    out += name;
    out += '>';
}

// A database response that contains the word counts as failed, and a caller may have any name.
void removeFailureMarker(std::string& text, std::size_t begin) {
    constexpr std::string_view kMarker = "failure";
    constexpr std::string_view kHarmless = "failur&#101;";
    std::size_t at = text.find(kMarker, begin);
    while (at != std::string::npos) {
        text.replace(at, kMarker.size(), kHarmless);
        at = text.find(kMarker, at + kHarmless.size());
    }
}

void appendText(std::string& out, std::string_view name, const std::string& value) {
    if (!value.empty()) {
        appendBegin(out, name);
        const std::size_t begin = out.size();
        ClientUtils::appendEscapedXml(out, value);
        removeFailureMarker(out, begin);
        appendEnd(out, name);
    }
}

// Omits fields that have their default: a reader gives a missing field the same value.
struct FieldWriter {
    std::string& out;

    template <typename Part, typename PartFields>
    void operator()(const Part& part, PartFields) const {
        for (const auto& field : PartFields::kTexts) {
            appendText(out, field.name, (part.*field.get)());
        }
        for (const auto& field : PartFields::kFlags) {
            if ((part.*field.get)()) {
                appendElement(out, field.name, "true");
            }
        }
        for (const auto& field : PartFields::kNumbers) {
            if (const std::int32_t value = field.get(part); value != 0) {
                appendElement(out, field.name, std::to_string(value));
            }
        }
    }
};

template <typename Item>
std::size_t occurrenceCount(const Item& item) {
    if constexpr (kHasOccurrences<Item>) {
        return occurrencesOf(item).size();
    }
    return 0;
}

template <typename Item>
std::string bodyOf(const Item& item) {
    constexpr std::size_t kUsualPart = 400;
    std::string out;
    out.reserve(kUsualPart * (1 + occurrenceCount(item)));
    appendElement(out, kTypeField, kTypeOf<Item>);
    forEachPart(item, FieldWriter{out});
    if constexpr (kHasOccurrences<Item>) {
        for (const auto& info : occurrencesOf(item)) {
            appendBegin(out, kOccurrence);
            forEachPart(info, FieldWriter{out});
            appendEnd(out, kOccurrence);
        }
    }
    return out;
}

}  // namespace

void appendElement(std::string& out, std::string_view name, std::string_view body) {
    appendBegin(out, name);
    out += body;
    appendEnd(out, name);
}

void appendField(std::string& out, const char* name, const std::string& value) {
    appendElement(out, name, ClientUtils::escapeXMLString(value));
}

std::string itemBody(const MissedCallItem& item) {
    return bodyOf(item);
}

std::string itemBody(const DialledCallItem& item) {
    return bodyOf(item);
}

std::string itemBody(const ReceivedCallItem& item) {
    return bodyOf(item);
}

std::string itemBody(const ForwardedCallItem& item) {
    return bodyOf(item);
}

std::string itemBody(const CallBackItem& item) {
    return bodyOf(item);
}

std::string itemBody(const Contact& contact) {
    std::string out = bodyOf(contact);
    if (contact.getContactSource() != Contact::eOrderedContactSource::eUnknown) {
        appendText(out, kContactSource, nameOf(contact.getContactSource()));
    }
    std::string records;
    for (const Contact::CallRecord& record : contact.getCallRecords()) {
        std::string fields;
        appendText(fields, kUniqueId, record.entryId);
        appendText(fields, kTypeField, record.type);
        appendElement(records, kCallRecord, fields);
    }
    if (!records.empty()) {
        appendElement(out, kCallRecords, records);
    }
    return out;
}

std::string keyBody(const CallItemWithPicture& item) {
    std::string out;
    appendText(out, kUniqueId, item.getUniqueId());
    appendText(out, kEntryId, item.getEntryId());
    return out;
}

std::string keyBody(const CallBackItem& item) {
    std::string out;
    appendText(out, kEntryId, item.getEntryId());
    return out;
}

std::string entryElement(const std::string& body) {
    std::string out;
    appendElement(out, kEntry, body);
    return out;
}

}  // namespace journalxml
