#include "host/csta-wire/CallLogWire.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <string>
#include <utility>

#include "host/csta-wire/MessageWriter.h"
#include "host/csta-wire/WireDocument.h"

// The members of each record stand once, in `passEntry` and `passRequest`, which a `Writing` and a `Reading` go through alike.

namespace host {

namespace {

using Entry = CallLogEntryEvent;
using Request = CallLogEntryRequest;
using Pair = Request::ValueAndText;

/// What stands in a message for a number.
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

/// The elements of a pair.
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

/// Writes members into the open element; empty texts and zeros are left out, but where a member must stand.
class Writing {
public:
    explicit Writing(MessageWriter& writer) : m_writer(writer) {}

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
    /// Whether something is to stand of a member that belongs to another one.
    [[nodiscard]] static bool wants(const std::string& other) { return !other.empty(); }

private:
    MessageWriter& m_writer;
};

/// Reads members out of an element; one that is missing or makes no sense is empty or zero.
class Reading {
public:
    explicit Reading(pugi::xml_node element) : m_element(element) {}

    void text(const char* name, std::string& text) const { text = childText(m_element, name); }
    template <typename Number>
    void number(const char* name, Number& number) const {
        number = static_cast<Number>(numberIn(m_element, name).value_or(0));
    }
    template <typename Number>
    void requiredNumber(const char* name, Number& number) {
        m_isWhole = m_isWhole && numberIn(m_element, name).has_value();
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
        m_isWhole = word(name, words, number) && m_isWhole;
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
    [[nodiscard]] static bool wants(const std::string& /*other*/) { return true; }

    /// Whether every required member could be read.
    [[nodiscard]] bool isWhole() const { return m_isWhole; }

private:
    const pugi::xml_node m_element;
    bool m_isWhole = true;
};

template <typename Way, typename EntryOfWay>
void passEntry(Way& way, EntryOfWay& entry) {
    way.requiredWord("action", kEventActions, entry.action);
    way.requiredNumber("logTarget", entry.logTarget);
    way.text("subscriberNumber", entry.subscriberNumber);
    way.text("name", entry.name);
    way.number("presentationA", entry.presentationA);
    way.number("presentationB", entry.presentationB);
    way.number("presentationC", entry.presentationC);
    way.number("presentationD", entry.presentationD);
    way.text("textC", entry.textC);
    way.text("textD", entry.textD);
    way.number("valueE", entry.valueE);
    way.text("textE", entry.textE);
    way.number("valueF", entry.valueF);
    way.text("textF", entry.textF);
    way.text("entryTime", entry.entryTime);
    if (way.wants(entry.entryTime)) {
        way.word("entryTimeFormat", kTimeFormats, entry.entryTimeFormat);
    }
}

template <typename Way, typename RequestOfWay>
void passRequest(Way& way, RequestOfWay& request) {
    way.requiredWord("action", kRequestActions, request.action);
    way.requiredNumber("logTarget", request.logTarget);
    way.text("entryTime", request.entryTime);
    way.number("numberKind", request.numberKind);
    way.text("subscriberNumber", request.subscriberNumber);
    way.pairs("further", {"value", "text"}, request.further);
}

template <typename Pass>
void writePrivate(MessageWriter& writer, std::string_view element, Pass pass) {
    writer.open("privateData").open("private").open(element);
    Writing way(writer);
    pass(way);
    writer.close().close().close();
}

template <typename Record, typename Pass>
std::optional<Record> readPrivate(pugi::xml_node root, std::string_view element, Pass pass) {
    Reading way(childNamed(childNamed(privateDataOf(root), "private"), element));
    Record record;
    pass(way, record);
    return way.isWhole() ? std::optional(std::move(record)) : std::nullopt;
}

}  // namespace

void writeCallLogEntry(MessageWriter& writer, const Entry& entry) {
    writePrivate(writer, kCallLogEntry, [&entry](Writing& way) { passEntry(way, entry); });
}

void writeCallLogEntryRequest(MessageWriter& writer, const Request& request) {
    writePrivate(writer, kCallLogEntryRequest, [&request](Writing& way) { passRequest(way, request); });
}

std::optional<Entry> readCallLogEntry(pugi::xml_node root) {
    return readPrivate<Entry>(root, kCallLogEntry, [](Reading& way, Entry& entry) { passEntry(way, entry); });
}

std::optional<Request> readCallLogEntryRequest(pugi::xml_node root) {
    return readPrivate<Request>(root, kCallLogEntryRequest,
                                [](Reading& way, Request& request) { passRequest(way, request); });
}

pugi::xml_node privateDataOf(pugi::xml_node root) {
    const pugi::xml_node data = childNamed(childNamed(root, "extensions"), "privateData");
    return data ? data : childNamed(root, "privateData");
}

}  // namespace host
