#include "platform/journal-library/XmlNames.h"

#include <array>

namespace journalxml {
namespace {

using Source = Contact::eOrderedContactSource;

struct SourceName {
    Source source;
    const char* name;
};

constexpr std::array<SourceName, 6> kSources{{
    {Source::eUnknown, "unknown"},
    {Source::ePersonal, "personal"},
    {Source::eCompany, "company"},
    {Source::eLdap, "ldap"},
    {Source::eExchange, "exchange"},
    {Source::eCallLog, "calllog"},
}};

}  // namespace

const char* nameOf(Contact::eOrderedContactSource source) noexcept {
    for (const SourceName& known : kSources) {
        if (known.source == source) {
            return known.name;
        }
    }
    return kSources.front().name;
}

Contact::eOrderedContactSource contactSourceNamed(std::string_view name) noexcept {
    for (const SourceName& known : kSources) {
        if (name == known.name) {
            return known.source;
        }
    }
    return Source::eUnknown;
}

}  // namespace journalxml
