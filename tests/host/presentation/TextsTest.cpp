#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <string>
#include <vector>

#include "host/presentation/ChangeText.h"
#include "host/presentation/ItemSearch.h"
#include "host/presentation/PlainText.h"
#include "journalservice/JournalServiceObserverIfc.h"

namespace host {
namespace {

using Observer = JournalServiceObserverIfc;

/// A text and its result.
struct Row {
    std::string text;
    std::string shown;
};

template <typename Item, typename Info>
Item ann(Info info) {
    Item item;
    item.setFirstname("Änne");
    item.setSurname("Müller-Łuczak");
    info.setNumber("4711");
    item.addCallInfoToList(info);
    return item;
}

TEST(ChangeText, DescribesACallOrAChangeOfAList) {
    auto missed = ann<MissedCallItem>(MissedCallItem::MissedCallInfo());
    auto viewed = missed;
    viewed.setViewed(true);
    const auto dialled = ann<DialledCallItem>(DialledCallItem::DialledCallInfo());
    ReceivedCallItem::ReceivedCallInfo lasting;
    lasting.setDuration("01:01");
    const auto forwarded = ann<ForwardedCallItem>(ForwardedCallItem::ForwardedCallInfo());
    ForwardedCallItem::ForwardedCallInfo away;
    away.setForwardedToNumber("2002");
    const std::vector<Row> rows{
        {describeChange(missed, Observer::eItemUpdated), "missed call from Änne Müller-Łuczak (4711)"},
        {describeChange(viewed, Observer::eItemUpdated),
         "missed call from Änne Müller-Łuczak (4711) was viewed"},
        {describeChange(dialled, Observer::eItemUpdated), "dialled Änne Müller-Łuczak (4711)"},
        {describeChange(ann<ReceivedCallItem>(lasting), Observer::eItemAdded),
         "received call from Änne Müller-Łuczak (4711), 01:01"},
        {describeChange(forwarded, Observer::eItemAdded), "forwarded call from Änne Müller-Łuczak (4711)"},
        {describeChange(ann<ForwardedCallItem>(away), Observer::eItemAdded),
         "forwarded call from Änne Müller-Łuczak (4711) to 2002"},
        {describeChange(MissedCallItem(), Observer::eItemAdded), "missed call from unknown"},
        {describeChange(ForwardedCallItem(), Observer::eItemAdded), "forwarded call from unknown"},
        {describeChange(MissedCallItem(), Observer::eItemDeleted), "a missed call was deleted"},
        {describeChange(DialledCallItem(), Observer::eListCleared), "the dialled calls were cleared"},
        {describeChange(ReceivedCallItem(), Observer::eListChanged), "the received calls changed"},
        {describeChange(ForwardedCallItem(), 99), "the forwarded calls changed"},
        {describeChange(CallBackItem(), Observer::eItemDeleted), "a callback was deleted"},
        {describeMissedCount(0), "no new missed calls"},
        {describeMissedCount(1), "1 new missed call"},
        {describeCallbackCount(2), "2 callbacks"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(row.text, row.shown);
    }
}

TEST(ItemSearch, FindsNamesAndNumbersInAnyCaseAndBytes) {
    auto item = ann<MissedCallItem>(MissedCallItem::MissedCallInfo());
    MissedCallItem::MissedCallInfo other;
    other.setNumber("+49 (30) 12-34");
    item.addCallInfoToList(other);
    for (const char* text : {"", "müller", "MÜLLER", "änne mü", "łuc", "ŁUC", "4711", "71", "+4930",
                             "30.1234", "muller", "mu\u0308ll", "ANNE", " mü "}) {
        EXPECT_TRUE(itemMatches(item, SearchText(text))) << text;
    }
    for (const char* text : {"müller änne", "4712", "ß", "()", "49303"}) {
        EXPECT_FALSE(itemMatches(item, SearchText(text))) << text;
    }
    CallBackItem callback;
    callback.setSurname("Παπαδοπούλου Ёлкина Иванов M\xfcller");
    callback.setNumber("4711");
    for (const char* text : {"ΠΑΠΑΔ", "παπαδόπ", "ёлкИНА иВАН", "елкина", "m\xfcL", "4711"}) {
        EXPECT_TRUE(itemMatches(callback, SearchText(text))) << text;
    }
    for (const char* text : {"\xff\xfe", "m\xfbl", "4712"}) {
        EXPECT_FALSE(itemMatches(callback, SearchText(text))) << text;
    }
}

TEST(PlainText, EscapesWhatControlsATerminal) {
    const std::vector<Row> rows{
        {"Ann Müller", "Ann Müller"},
        {"two\nlines\r\n", "two\\nlines\\r\\n"},
        {"\x1b[31mred", "\\x1b[31mred"},
        {std::string("nul\0byte", 8), "nul\\x00byte"},
        {"\x7f", "\\x7f"},
        {"M\xfcller", "M\\xfcller"},
        {"half \xe2\x82", "half \\xe2\\x82"},
        {"\u009b[31m", "\\xc2\\x9b[31m"},
        {"line\u2028separator", "line\\xe2\\x80\\xa8separator"},
        {"\u202eturned", "\\xe2\\x80\\xaeturned"},
        {"日本 😀", "日本 😀"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(printable(row.text), row.shown);
    }
}

TEST(PlainText, FillsColumnsAsATerminalDoes) {
    EXPECT_EQ(displayWidth("Mu\u0308ller"), 6U);
    EXPECT_EQ(displayWidth("日本😀"), 6U);
    EXPECT_EQ(padded("日本", 6), "日本  ");
    EXPECT_EQ(padded("longer", 3), "longer");
    EXPECT_EQ(shortened("Müller", 6), "Müller");
    EXPECT_EQ(shortened("Mu\u0308ller", 4), "Mu\u0308l…");
    EXPECT_EQ(shortened("日本語", 5), "日本…");
    EXPECT_EQ(shortened("日本語", 4), "日…");
    EXPECT_EQ(shortened("日本語", 1), "…");
}

TEST(PlainText, ShowsTimesInTheZoneOfTheUserAndOtherTextsUnchanged) {
    ::setenv("TZ", "CET-1CEST,M3.5.0,M10.5.0/3", 1);
    ::tzset();
    const std::vector<Row> rows{
        {"2026-11-21T05:22:05Z", "2026-11-21 06:22:05"},
        {"2026-07-21T23:22:05Z", "2026-07-22 01:22:05"},
        {"", ""},
        {"2026-11-21", "2026-11-21"},
        {"2026-11-21T05:22:05Z and more", "2026-11-21T05:22:05Z and more"},
        {"2026-13-21T05:22:05Z", "2026-13-21T05:22:05Z"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(localTime(row.text), row.shown);
    }
    ::unsetenv("TZ");
    ::tzset();
}

TEST(PlainText, NamesAPartyByItsNonEmptyParts) {
    EXPECT_EQ(partyText("Ann", "", "") + partyText("", "", "12") + partyText("", "4711", "4711"),
              "Ann124711");
}

}  // namespace
}  // namespace host
