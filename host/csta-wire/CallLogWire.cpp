#include "host/csta-wire/CallLogWire.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <string>
#include <utility>

#include "host/csta-wire/MessageWriter.h"
#include "host/csta-wire/WireDocument.h"

// `visitEntry` and `visitRequest` list the members of each record once, for both `MemberWriter` and
// `MemberReader`.

namespace host {

namespace {

using Entry = CallLogEntryEvent;
using Request = CallLogEntryRequest;
using Pair = Request::ValueAndText;

/// A number and its word in a message.
struct Word {
    const char* word;
    int number;
};
template <std::size_t count>
using Words = std::array<Word, count>;

constexpr Words<3> kEventActions = {
    {{"add", Entry::eAdd}, {"delete", Entry::eDelete}, {"deleteAll", Entry::eDeleteAll}}};
constexpr Words<2> kRequestActions = {{{"delete", Request::eDeleteOne}, {"deleteAll", Request::eDeleteAll}}};
constexpr Words<2> kTimeFormats = {{{"iso8601", Entry::eTimeIso8601}, {"local", Entry::eTimeLocal}}};

/// The element names of a pair.
struct PairNames {
    const char* value;
    const char* text;
};

std::optional<int> numberIn(pugi::xml_node element, const char* name) {
    const std::string text = childText(element, name);
    int number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size() ? std::optional(number) : std::nullopt;
}

/// Writes members into the open element. Omits empty texts and zeros, except of required members.
class MemberWriter {
public:
    explicit MemberWriter(MessageWriter& writer) : m_writer(writer) {}

    void text(const char* name, const std::string& text) {
        if (!text.empty()) {
            m_writer.text(name, text);
        }
    }
    void number(const char* name, int number) {
        if (number != 0) {
            requiredNumber(name, number);
        }
    }
    void requiredNumber(const char* name, int number) { m_writer.text(name, std::to_string(number)); }
    template <std::size_t count>
    void word(const char* name, const Words<count>& words, int number) {
        const auto found = std::find_if(words.begin(), words.end(),
                                        [number](const Word& row) { return row.number == number; });
        m_writer.text(name, found == words.end() ? "" : found->word);
    }
    template <std::size_t count>
    void requiredWord(const char* name, const Words<count>& words, int number) {
        word(name, words, number);
    }
    template <std::size_t count>
    void pairs(const char* name, const PairNames& names, const std::array<Pair, count>& pairs) {
        for (const Pair& pair : pairs) {
            m_writer.open(name).text(names.value, std::to_string(pair.value));
            m_writer.text(names.text, pair.text).close();
        }
    }
    /// True if a member that depends on `other` is written.
    [[nodiscard]] static bool needs(const std::string& other) { return !other.empty(); }

private:
    MessageWriter& m_writer;
};

/// Reads members from an element. A missing or invalid member becomes empty or zero.
class MemberReader {
public:
    explicit MemberReader(pugi::xml_node element) : m_element(element) {}

    void text(const char* name, std::string& text) const { text = childText(m_element, name); }
    template <typename Number>
    void number(const char* name, Number& number) const {
        number = static_cast<Number>(numberIn(m_element, name).value_or(0));
    }
    template <typename Number>
    void requiredNumber(const char* name, Number& number) {
        m_isComplete = m_isComplete && numberIn(m_element, name).has_value();
        this->number(name, number);
    }
    template <std::size_t count, typename Number>
    bool word(const char* name, const Words<count>& words, Number& number) const {
        const std::string text = childText(m_element, name);
        const auto found =
            std::find_if(words.begin(), words.end(), [&text](const Word& row) { return row.word == text; });
        number = static_cast<Number>(found == words.end() ? 0 : found->number);
        return found != words.end();
    }
    template <std::size_t count, typename Number>
    void requiredWord(const char* name, const Words<count>& words, Number& number) {
        m_isComplete = word(name, words, number) && m_isComplete;
    }
    template <std::size_t count>
    void pairs(const char* name, const PairNames& names, std::array<Pair, count>& pairs) const {
        auto pair = pairs.begin();
        for (const pugi::xml_node child : m_element.children()) {
            if (localName(child) == name && pair != pairs.end()) {
                *pair++ = {numberIn(child, names.value).value_or(0), childText(child, names.text)};
            }
        }
    }
    [[nodiscard]] static bool needs(const std::string& /*other*/) { return true; }

    /// True if every required member was valid.
    [[nodiscard]] bool isComplete() const { return m_isComplete; }

private:
    const pugi::xml_node m_element;
    bool m_isComplete = true;
};

template <typename Visitor, typename SomeEntry>
void visitEntry(Visitor& visitor, SomeEntry& entry) {
    visitor.requiredWord("action", kEventActions, entry.action);
    visitor.requiredNumber("logTarget", entry.logTarget);
    visitor.text("subscriberNumber", entry.subscriberNumber);
    visitor.text("name", entry.name);
    visitor.number("presentationA", entry.presentationA);
    visitor.number("presentationB", entry.presentationB);
    visitor.number("presentationC", entry.presentationC);
    visitor.number("presentationD", entry.presentationD);
    visitor.text("textC", entry.textC);
    visitor.text("textD", entry.textD);
    visitor.number("valueE", entry.valueE);
    visitor.text("textE", entry.textE);
    visitor.number("valueF", entry.valueF);
    visitor.text("textF", entry.textF);
    visitor.text("entryTime", entry.entryTime);
    if (visitor.needs(entry.entryTime)) {
        visitor.word("entryTimeFormat", kTimeFormats, entry.entryTimeFormat);
    }
}

template <typename Visitor, typename SomeRequest>
void visitRequest(Visitor& visitor, SomeRequest& request) {
    visitor.requiredWord("action", kRequestActions, request.action);
    visitor.requiredNumber("logTarget", request.logTarget);
    visitor.text("entryTime", request.entryTime);
    visitor.number("numberKind", request.numberKind);
    visitor.text("subscriberNumber", request.subscriberNumber);
    visitor.pairs("further", {"value", "text"}, request.further);
}

template <typename Visit>
void writePrivate(MessageWriter& writer, std::string_view element, Visit visit) {
    writer.open("privateData").open("private").open(element);
    MemberWriter visitor(writer);
    visit(visitor);
    writer.close().close().close();
}

template <typename Record, typename Visit>
std::optional<Record> readPrivate(pugi::xml_node root, std::string_view element, Visit visit) {
    MemberReader visitor(childNamed(childNamed(privateDataOf(root), "private"), element));
    Record record;
    visit(visitor, record);
    return visitor.isComplete() ? std::optional(std::move(record)) : std::nullopt;
}

}  // namespace

void writeCallLogEntry(MessageWriter& writer, const Entry& entry) {
    writePrivate(writer, kCallLogEntry, [&entry](MemberWriter& visitor) { visitEntry(visitor, entry); });
}

void writeCallLogEntryRequest(MessageWriter& writer, const Request& request) {
    writePrivate(writer, kCallLogEntryRequest,
                 [&request](MemberWriter& visitor) { visitRequest(visitor, request); });
}

std::optional<Entry> readCallLogEntry(pugi::xml_node root) {
    return readPrivate<Entry>(root, kCallLogEntry,
                              [](MemberReader& visitor, Entry& entry) { visitEntry(visitor, entry); });
}

std::optional<Request> readCallLogEntryRequest(pugi::xml_node root) {
    return readPrivate<Request>(root, kCallLogEntryRequest, [](MemberReader& visitor, Request& request) {
        visitRequest(visitor, request);
    });
}

pugi::xml_node privateDataOf(pugi::xml_node root) {
    const pugi::xml_node data = childNamed(childNamed(root, "extensions"), "privateData");
    return data ? data : childNamed(root, "privateData");
}

}  // namespace host
