#include "host/csta-wire/CallLogWire.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <string>

#include "host/csta-wire/MessageWriter.h"
#include "host/csta-wire/WireDocument.h"

namespace host {

namespace {

using Entry = CallLogEntryEvent;
using Request = CallLogEntryRequest;

struct ActionName {
    const char* name;
    int action;
};

constexpr ActionName kEventActions[] = {
    {"add", Entry::eAdd}, {"delete", Entry::eDelete}, {"deleteAll", Entry::eDeleteAll}};
constexpr ActionName kRequestActions[] = {{"delete", Request::eDeleteOne},
                                          {"deleteAll", Request::eDeleteAll}};

constexpr std::string_view kLocalTime = "local";

template <typename Names>
const char* nameOf(const Names& names, int action) {
    const auto* const found = std::find_if(std::begin(names), std::end(names),
                                           [action](const ActionName& row) { return row.action == action; });
    return found == std::end(names) ? "" : found->name;
}

template <typename Names>
std::optional<int> actionOf(const Names& names, pugi::xml_node element) {
    const std::string name = childText(element, "action");
    const auto* const found = std::find_if(std::begin(names), std::end(names),
                                           [&name](const ActionName& row) { return row.name == name; });
    return found == std::end(names) ? std::nullopt : std::optional(found->action);
}

std::optional<int> numberIn(pugi::xml_node element, std::string_view name) {
    const std::string text = childText(element, name);
    int number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size() ? std::optional(number) : std::nullopt;
}

int numberOr0(pugi::xml_node element, std::string_view name) {
    return numberIn(element, name).value_or(0);
}

Entry::_PresentationValue presentation(pugi::xml_node element, std::string_view name) {
    return static_cast<Entry::_PresentationValue>(numberOr0(element, name));
}

void writeText(MessageWriter& writer, std::string_view name, const std::string& text) {
    if (!text.empty()) {
        writer.text(name, text);
    }
}

void writeNumber(MessageWriter& writer, std::string_view name, int number) {
    if (number != 0) {
        writer.text(name, std::to_string(number));
    }
}

void openPrivate(MessageWriter& writer, std::string_view element) {
    writer.open("privateData").open("private").open(element);
}

void closePrivate(MessageWriter& writer) {
    writer.close().close().close();
}

pugi::xml_node privateElement(pugi::xml_node root, std::string_view name) {
    return childNamed(childNamed(privateDataOf(root), "private"), name);
}

}  // namespace

void writeCallLogEntry(MessageWriter& writer, const Entry& entry) {
    openPrivate(writer, kCallLogEntry);
    writer.text("action", nameOf(kEventActions, entry.action));
    writer.text("logTarget", std::to_string(entry.logTarget));
    writeText(writer, "subscriberNumber", entry.subscriberNumber);
    writeText(writer, "name", entry.name);
    writeNumber(writer, "presentationA", entry.presentationA);
    writeNumber(writer, "presentationB", entry.presentationB);
    writeNumber(writer, "presentationC", entry.presentationC);
    writeNumber(writer, "presentationD", entry.presentationD);
    writeText(writer, "textC", entry.textC);
    writeText(writer, "textD", entry.textD);
    writeNumber(writer, "valueE", entry.valueE);
    writeText(writer, "textE", entry.textE);
    writeNumber(writer, "valueF", entry.valueF);
    writeText(writer, "textF", entry.textF);
    writeText(writer, "entryTime", entry.entryTime);
    if (!entry.entryTime.empty()) {
        writer.text("entryTimeFormat", entry.entryTimeFormat == Entry::eTimeLocal ? kLocalTime : "iso8601");
    }
    closePrivate(writer);
}

void writeCallLogEntryRequest(MessageWriter& writer, const Request& request) {
    openPrivate(writer, kCallLogEntryRequest);
    writer.text("action", nameOf(kRequestActions, request.action));
    writer.text("logTarget", std::to_string(request.logTarget));
    writeText(writer, "entryTime", request.entryTime);
    writeNumber(writer, "numberKind", request.numberKind);
    writeText(writer, "subscriberNumber", request.subscriberNumber);
    for (const Request::ValueAndText& pair : request.further) {
        writer.open("further").text("value", std::to_string(pair.value));
        writer.text("text", pair.text).close();
    }
    closePrivate(writer);
}

std::optional<Entry> readCallLogEntry(pugi::xml_node root) {
    const pugi::xml_node element = privateElement(root, kCallLogEntry);
    const std::optional<int> action = actionOf(kEventActions, element);
    const std::optional<int> target = numberIn(element, "logTarget");
    if (!action || !target) {
        return std::nullopt;
    }
    Entry entry;
    entry.action = *action;
    entry.logTarget = static_cast<Entry::_LogTarget>(*target);
    entry.subscriberNumber = childText(element, "subscriberNumber");
    entry.name = childText(element, "name");
    entry.presentationA = presentation(element, "presentationA");
    entry.presentationB = presentation(element, "presentationB");
    entry.presentationC = presentation(element, "presentationC");
    entry.presentationD = presentation(element, "presentationD");
    entry.textC = childText(element, "textC");
    entry.textD = childText(element, "textD");
    entry.valueE = numberOr0(element, "valueE");
    entry.textE = childText(element, "textE");
    entry.valueF = numberOr0(element, "valueF");
    entry.textF = childText(element, "textF");
    entry.entryTime = childText(element, "entryTime");
    entry.entryTimeFormat =
        childText(element, "entryTimeFormat") == kLocalTime ? Entry::eTimeLocal : Entry::eTimeIso8601;
    return entry;
}

std::optional<Request> readCallLogEntryRequest(pugi::xml_node root) {
    const pugi::xml_node element = privateElement(root, kCallLogEntryRequest);
    const std::optional<int> action = actionOf(kRequestActions, element);
    const std::optional<int> target = numberIn(element, "logTarget");
    if (!action || !target) {
        return std::nullopt;
    }
    Request request;
    request.action = *action;
    request.logTarget = static_cast<Entry::_LogTarget>(*target);
    request.entryTime = childText(element, "entryTime");
    request.numberKind = numberOr0(element, "numberKind");
    request.subscriberNumber = childText(element, "subscriberNumber");
    std::size_t pairs = 0;
    for (const pugi::xml_node child : element.children()) {
        if (localName(child) == "further" && pairs < request.further.size()) {
            request.further[pairs++] = {numberOr0(child, "value"), childText(child, "text")};
        }
    }
    return request;
}

pugi::xml_node privateDataOf(pugi::xml_node root) {
    const pugi::xml_node data = childNamed(childNamed(root, "extensions"), "privateData");
    return data ? data : childNamed(root, "privateData");
}

}  // namespace host
