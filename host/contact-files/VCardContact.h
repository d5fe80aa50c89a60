#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "host/contact-files/ContactReader.h"
#include "host/contact-files/VCardLine.h"
#include "host/contact-files/VCardNumbers.h"

namespace host {

/// One vCard on its way to a contact: takes its properties, in their order, and makes the record of them.
///
///     N, FN, ORG      names; a card without N is shown by FN, and one without both by its company
///     TEL             the four numbers and the default one (see `VCardNumbers`)
///     EMAIL           the preferred address, else the first
///     ADR             the first two, each in one line
///     ORG, TITLE/ROLE, CATEGORIES, PHOTO (a reference only, never the picture itself), UID
///
/// Everything else is passed over. One thread at a time.
class VCardContact {
public:
    // Our own properties, for what vCard has no property for.
    static constexpr const char* kVoiceDial = "X-CALLJOURNAL-VOICE-DIAL";
    static constexpr const char* kSource = "X-CALLJOURNAL-SOURCE";

    void take(const VCardLine& property);
    /// The record of the card that begins in that line. Once.
    [[nodiscard]] ContactRecord finish(std::size_t line);

private:
    void takeVersion(const VCardLine& property);
    void takeName(const VCardLine& property);
    void takeEmail(const VCardLine& property);
    void takeAddress(const VCardLine& property);
    void takePhoto(const VCardLine& property);
    void takeUid(const VCardLine& property);
    void takeSource(const VCardLine& property);
    void takeOther(const VCardLine& property);
    void refuse(const std::string& reason);

    Contact m_contact;
    std::string m_formattedName;
    std::string m_role;
    int m_emailPreference = 0;
    VCardNumbers m_numbers;
    std::string m_refusal;
};

}  // namespace host
