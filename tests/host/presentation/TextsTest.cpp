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
    const auto dialled = ann<DialledCallItem>(DialledCallItem::DialledCallInfo());
    ReceivedCallItem::ReceivedCallInfo lasting;
    lasting.setDuration("01:01");
    ForwardedCallItem::ForwardedCallInfo away;
    away.setForwardedToNumber("2002");
    std::string texts = describeChange(missed, Observer::eItemUpdated);
    missed.setViewed(true);
    for (const std::string& text :
         {describeChange(missed, Observer::eItemUpdated), describeChange(dialled, Observer::eItemUpdated),
          describeChange(ann<ReceivedCallItem>(lasting), Observer::eItemAdded),
          describeChange(ann<ForwardedCallItem>(away), Observer::eItemAdded),
          describeChange(ForwardedCallItem(), Observer::eItemAdded),
          describeChange(MissedCallItem(), Observer::eItemDeleted),
          describeChange(DialledCallItem(), Observer::eListCleared),
          describeChange(ReceivedCallItem(), Observer::eListChanged), describeChange(ForwardedCallItem(), 99),
          describeChange(CallBackItem(), Observer::eItemDeleted), describeMissedCount(0),
          describeMissedCount(1), describeCallbackCount(2)}) {
        texts += "\n" + text;
    }
    EXPECT_EQ(texts, R"(missed call from Änne Müller-Łuczak (4711)
missed call from Änne Müller-Łuczak (4711) was viewed
dialled Änne Müller-Łuczak (4711)
received call from Änne Müller-Łuczak (4711), 01:01
forwarded call from Änne Müller-Łuczak (4711) to 2002
forwarded call from unknown
a missed entry was deleted
the dialled calls were cleared
the received calls changed
the forwarded calls changed
a callback was deleted
no missed entries are not viewed
1 missed entry is not viewed
2 callbacks)");
}

TEST(ItemSearch, FindsNamesAndNumbersInAnyCaseAndBytes) {
    Contact contact;
    contact.setFirstname("Änne");
    contact.setSurname("Müller-Łuczak");
    contact.setOffice("4711");
    contact.setOffice2("+49 (30) 12-34");
    for (const char* text : {"", "müller", "MÜLLER", "änne mü", "łuc", "ŁUC", "4711", "71", "+4930",
                             "30.1234", "muller", "mu\u0308ll", "ANNE", " mü "}) {
        EXPECT_TRUE(itemMatches(contact, SearchText(text))) << text;
    }
    for (const char* text : {"müller änne", "4712", "ß", "()", "49303"}) {
        EXPECT_FALSE(itemMatches(contact, SearchText(text))) << text;
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
    EXPECT_EQ(
        printable("Ann Müller 日本 😀 two\nlines\r\n \x1b[31mred \x7f M\xfcller \u009b[31m half \xe2\x82"),
        "Ann Müller 日本 😀 two\\nlines\\r\\n \\x1b[31mred \\x7f M\\xfcller \\xc2\\x9b[31m half \\xe2\\x82");
    EXPECT_EQ(printable(std::string("nul\0byte", 8) + " line\u2028separator \u202eturned"),
              "nul\\x00byte line\\xe2\\x80\\xa8separator \\xe2\\x80\\xaeturned");
    EXPECT_EQ(printable("\u200e\u200f\u061c\U000E0041"),
              R"(\xe2\x80\x8e\xe2\x80\x8f\xd8\x9c\xf3\xa0\x81\x81)");
    std::string marks = "e";
    for (int mark = 0; mark < 180; ++mark) {
        marks += "\u0301";
    }
    EXPECT_EQ(printable(marks + "f\u0301"), marks.substr(0, 17) + "f\u0301");
}

TEST(PlainText, FillsColumnsAsATerminalDoes) {
    EXPECT_EQ(padded("日本", 6) + padded("longer", 3) + padded("Mu\u0308ller", 7),
              "日本  longerMu\u0308ller ");
    const std::pair<std::string, std::size_t> rows[] = {
        {"Müller", 6}, {"Mu\u0308ller", 4}, {"日本語", 5}, {"日本語", 4}, {"日本語", 1}};
    std::string all;
    for (const auto& [text, width] : rows) {
        all += shortened(text, width) + " ";
    }
    EXPECT_EQ(all, "Müller Mu\u0308l… 日本… 日… … ");
}

TEST(PlainText, ShowsTimesInTheZoneOfTheUserAndOtherTextsUnchanged) {
    ::setenv("TZ", "CET-1CEST,M3.5.0,M10.5.0/3", 1);
    ::tzset();
    EXPECT_EQ(localTime("2026-11-21T05:22:05Z") + localTime("2026-07-21T23:22:05Z"),
              "2026-11-21 06:22:052026-07-22 01:22:05");
    for (const char* const text :
         {"", "2026-11-21", "2026-11-21T05:22:05Z and more", "2026-13-21T05:22:05Z"}) {
        EXPECT_EQ(localTime(text), text);
    }
    ::unsetenv("TZ");
    ::tzset();
}

}  // namespace
}  // namespace host
