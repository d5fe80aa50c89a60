#pragma once

#include <cstdint>
#include <string>

#include "journal-items/Sparse.h"

/// The data that every occurrence of a call records in any list: numbers, time and the switch's own marks.
///
/// A plain value without synchronisation; copies are deep. The fields are written in the order of the class,
/// so a dump of an item reads the same everywhere.
///
/// The journal interprets the number, the connected number and the time. The other fields are the marks that
/// a switch attaches to the entries of its own call log (log target, presentation values and texts). They are
/// kept so that a later request about the entry can quote them, and are otherwise copied unchanged.
class CallInfo {
public:
    CallInfo() = default;
    CallInfo(const CallInfo&) = default;
    CallInfo(CallInfo&&) noexcept = default;
    CallInfo& operator=(const CallInfo&) = default;
    CallInfo& operator=(CallInfo&&) noexcept = default;
    virtual ~CallInfo() = default;

    /// The tracked call's identifier as text; a random number for an entry that came from a switch's call
    /// log.
    [[nodiscard]] const std::string& getCallId() const noexcept { return m_callId; }
    void setCallId(const std::string& callId) { m_callId = callId; }

    /// The remote number; empty for an anonymous call.
    [[nodiscard]] const std::string& getNumber() const noexcept { return m_number; }
    void setNumber(const std::string& number) { m_number = number; }

    /// The party that is connected in the end: for a dialled feature access code the number that was reached,
    /// for a received or forwarded call the far end or the new destination.
    [[nodiscard]] const std::string& getConnectedNumber() const noexcept { return m_connectedNumber; }
    void setConnectedNumber(const std::string& number) { m_connectedNumber = number; }

    /// The text that goes with presentation C of a call-log entry.
    [[nodiscard]] const std::string& getTextC() const noexcept { return m_textC.get(); }
    void setTextC(const std::string& text) { m_textC.set(text); }

    /// The text that goes with presentation D of a call-log entry.
    [[nodiscard]] const std::string& getTextD() const noexcept { return m_textD.get(); }
    void setTextD(const std::string& text) { m_textD.set(text); }

    /// The time of the call: "2026-11-21T05:22:05Z". Compared as bytes, it orders occurrences and items by
    /// time.
    [[nodiscard]] const std::string& getTimeAndDate() const noexcept { return m_timeAndDate; }
    void setTimeAndDate(const std::string& timeAndDate) {
        // An assignment would reserve more than the text has.
        m_timeAndDate = std::string(timeAndDate);
    }

    /// The log of the switch that the entry belongs to.
    [[nodiscard]] std::int32_t getLogTarget() const noexcept { return m_logTarget; }
    void setLogTarget(std::int32_t target) noexcept { m_logTarget = target; }

    /// The presentation of the entry's values: A for the number, B for the name, C and D for the two texts
    /// above.
    [[nodiscard]] std::int32_t getPresentationA() const noexcept { return m_presentationA; }
    void setPresentationA(std::int32_t value) noexcept { m_presentationA = value; }
    [[nodiscard]] std::int32_t getPresentationB() const noexcept { return m_presentationB; }
    void setPresentationB(std::int32_t value) noexcept { m_presentationB = value; }
    /// Compared when the journal checks if a new missed or received call is already recorded.
    [[nodiscard]] std::int32_t getPresentationC() const noexcept { return m_presentationC; }
    void setPresentationC(std::int32_t value) noexcept { m_presentationC = value; }
    [[nodiscard]] std::int32_t getPresentationD() const noexcept { return m_presentationD; }
    void setPresentationD(std::int32_t value) noexcept { m_presentationD = value; }

    /// Every field, byte for byte.
    bool operator==(const CallInfo&) const = default;

private:
    std::string m_callId;
    std::string m_number;
    std::string m_connectedNumber;
    SparseText m_textC;
    SparseText m_textD;
    std::string m_timeAndDate;
    std::int32_t m_logTarget = 0;
    std::int32_t m_presentationA = 0;
    std::int32_t m_presentationB = 0;
    std::int32_t m_presentationC = 0;
    std::int32_t m_presentationD = 0;
};
