#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "host/contact-files/ContactReader.h"
#include "host/contact-files/VCardNumbers.h"
#include "host/contact-files/VCardProperty.h"

namespace host {

/// Converts one vCard (RFC 2426, RFC 6350) to a contact: receives its properties in order and makes the
/// record.
///
///     N, FN, ORG      names; a card without N is shown by FN, and one without both by its company
///     TEL             the four numbers and the default one (see `VCardNumbers`)
///     EMAIL           the preferred address, else the first
///     ADR             the first two, each in one line of text
///     ORG, TITLE/ROLE, CATEGORIES, PHOTO (a reference only, never the picture itself), UID
///
/// Other properties are skipped. One thread at a time.
class VCardContact {
public:
    // This program's properties for fields that vCard has no property for.
    static constexpr const char* kVoiceDial = "X-CALLJOURNAL-VOICE-DIAL";
    static constexpr const char* kSource = "X-CALLJOURNAL-SOURCE";

    void take(const VCardProperty& property);
    /// Returns the record of the card that begins in that line of the file. Call it once.
    [[nodiscard]] ContactRecord finish(std::size_t line);

private:
    void takeVersion(const VCardProperty& property);
    void takeName(const VCardProperty& property);
    void takeEmail(const VCardProperty& property);
    void takeAddress(const VCardProperty& property);
    void takePhoto(const VCardProperty& property);
    void takeUid(const VCardProperty& property);
    void takeSource(const VCardProperty& property);
    void takeOther(const VCardProperty& property);
    void refuse(const std::string& reason);

    Contact m_contact;
    std::string m_formattedName;
    std::string m_role;
    int m_emailPreference = 0;
    VCardNumbers m_numbers;
    std::string m_refusal;
};

}  // namespace host
