#include "host/call-files/CallColumns.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <sstream>

#include "host/text-files/FileText.h"

namespace host {
namespace {

/// The members that a column can hold. `id` is the name of the call id here: records have no other one.
constexpr std::array<std::string_view, 19> kMembers{"start",
                                                    "answered",
                                                    "ended",
                                                    "duration",
                                                    "number",
                                                    "name",
                                                    "calling",
                                                    "called",
                                                    "connectedNumber",
                                                    "connectedName",
                                                    "redirectingNumber",
                                                    "redirectingName",
                                                    "direction",
                                                    "list",
                                                    "id",
                                                    "callId",
                                                    "lineKey",
                                                    "reason",
                                                    "viewed"};

std::vector<std::string> split(const std::string& text, char separator) {
    std::vector<std::string> parts;
    std::istringstream stream(text);
    for (std::string part; std::getline(stream, part, separator);) {
        parts.emplace_back(stripped(part));
    }
    return parts;
}

/// A number of 1 to 4 digits; 0 for any other text.
std::size_t numberOf(const std::string& text) {
    const bool isNumber =
        !text.empty() && text.size() <= 4 && text.find_first_not_of("0123456789") == std::string::npos;
    return isNumber ? std::stoul(text) : 0;
}

/// "Ada Miller" <4711>, as several systems write the caller: the name goes to `name`, and the number to
/// `number` if no other column has it.
void splitCaller(CallFields& fields) {
    const auto name = fields.find("name");
    if (name == fields.end() || !name->second.ends_with('>')) {
        return;
    }
    const std::string caller = name->second;
    const std::size_t open = caller.rfind('<');
    if (open == std::string::npos) {
        return;
    }
    std::string_view text = stripped(std::string_view(caller).substr(0, open));
    if (text.size() >= 2 && text.front() == '"' && text.back() == '"') {
        text = text.substr(1, text.size() - 2);
    }
    const std::string number = caller.substr(open + 1, caller.size() - open - 2);
    name->second = text == number ? std::string_view() : text;
    if (!fields.contains("number") && !fields.contains("calling") && !number.empty()) {
        fields["number"] = number;
    }
}

}  // namespace

CallColumns::CallColumns(std::string_view text) {
    bool named = false;
    bool numbered = false;
    for (const std::string& part : split(std::string(text), ',')) {
        const std::size_t sign = part.find('=');
        Source source;
        source.member = stripped(std::string_view(part).substr(0, sign));
        if (sign == std::string::npos ||
            std::find(kMembers.begin(), kMembers.end(), source.member) == kMembers.end()) {
            std::string members;
            for (const std::string_view member : kMembers) {
                members.append(members.empty() ? "" : ", ").append(member);
            }
            throw CallFieldError("columns are MEMBER=COLUMN with a comma between them, not \"" + part +
                                 "\"; the members are " + members);
        }
        source.names = split(part.substr(sign + 1), '+');
        for (const std::string& name : source.names) {
            (numberOf(name) > 0 ? numbered : named) = true;
            source.columns.push_back(numberOf(name) - 1);
        }
        source.member = source.member == "id" ? "callId" : source.member;
        m_sources.push_back(std::move(source));
    }
    m_hasTitles = named || !numbered;
    if (std::none_of(m_sources.begin(), m_sources.end(),
                     [](const Source& each) { return each.member == "start" && !each.columns.empty(); })) {
        throw CallFieldError("the columns need one for start");
    }
}

void CallColumns::find(const std::vector<std::string>& titles) {
    for (Source& source : m_sources) {
        source.columns.clear();
        for (const std::string& name : source.names) {
            const auto found = std::find_if(titles.begin(), titles.end(), [&name](const std::string& title) {
                return lower(cleaned(title)) == lower(name);
            });
            if (found == titles.end()) {
                throw CallFieldError("its first row has no column " + name);
            }
            source.columns.push_back(static_cast<std::size_t>(found - titles.begin()));
        }
    }
}

CallFields CallColumns::fieldsIn(const std::vector<std::string>& cells) const {
    CallFields fields;
    for (const Source& source : m_sources) {
        std::string text;
        for (const std::size_t column : source.columns) {
            const std::string_view cell = column < cells.size() ? stripped(cells[column]) : "";
            text.append(text.empty() || cell.empty() ? "" : " ").append(cell);
        }
        if (!text.empty()) {
            fields[source.member] = text;
        }
    }
    splitCaller(fields);
    return fields;
}

}  // namespace host
