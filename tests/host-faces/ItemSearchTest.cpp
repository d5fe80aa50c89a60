#include "host/faces/ItemSearch.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace host {
namespace {

MissedCallItem item() {
    MissedCallItem made;
    made.setFirstname("Änne");
    made.setSurname("Müller-Łuczak");
    MissedCallItem::MissedCallInfo older;
    older.setNumber("+49301234");
    made.addCallInfoToList(older);
    MissedCallItem::MissedCallInfo newer;
    newer.setNumber("4711");
    made.addCallInfoToList(newer);
    return made;
}

TEST(ItemSearch, FindsNamesAndNumbersInWhateverLetters) {
    for (const char* text : {"", "müller", "MÜLLER", "änne mü", "łuc", "ŁUC", "4711", "71", "+4930"}) {
        EXPECT_TRUE(itemMatches(item(), text)) << text;
    }
    for (const char* text : {"muller", "Anne", "müller änne", "4712", "ß"}) {
        EXPECT_FALSE(itemMatches(item(), text)) << text;
    }
}

TEST(ItemSearch, FoldsGreekAndCyrillicToo) {
    CallBackItem callback;
    callback.setSurname("Παπαδοπούλου Ёлкина Иванов");
    EXPECT_TRUE(itemMatches(callback, "ΠΑΠΑΔ"));
    EXPECT_TRUE(itemMatches(callback, "ёлкИНА иВАН"));
}

TEST(ItemSearch, TakesAnyBytes) {
    CallBackItem callback;
    callback.setSurname("M\xfcller");
    EXPECT_TRUE(itemMatches(callback, "m\xfcL"));
    EXPECT_FALSE(itemMatches(callback, "\xff\xfe"));
}

TEST(ItemSearch, FindsACallbackByItsNumber) {
    CallBackItem callback;
    callback.setNumber("4711");
    EXPECT_TRUE(itemMatches(callback, "4711"));
    EXPECT_FALSE(itemMatches(callback, "4712"));
}

}  // namespace
}  // namespace host
