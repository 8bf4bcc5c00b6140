#include "apps/Text.h"

#include <gtest/gtest.h>

#include <string>

namespace tavero {
namespace {

TEST(Text, LowerCaseGoesBeyondASCII) {
    EXPECT_EQ(lowerCase("MAIL"), "mail");
    EXPECT_EQ(lowerCase("Éditeur Ω ЖУРНАЛ"), "éditeur ω журнал");
    EXPECT_EQ(lowerCase(""), "");
}

TEST(Text, LowerCaseMayNeedMoreBytes) {
    EXPECT_EQ(lowerCase("\u023A"), "\u2C65"); // two bytes to three
    EXPECT_EQ(lowerCase("\u0130"), "i\u0307");
}

TEST(Text, LowerCaseSurvivesBytesThatAreNotUTF8) {
    EXPECT_EQ(lowerCase(std::string("A\xFF") + "B").front(), 'a');
    EXPECT_EQ(lowerCase(std::string(1000, '\xFF')).empty(), false);
}

TEST(Text, WellFormedTextStaysAsItIs) {
    const std::string text = "a é € \U0001F600 \uFFFD \U0010FFFF";
    EXPECT_EQ(wellFormed(text), text);
    EXPECT_EQ(wellFormed(""), "");
    EXPECT_EQ(wellFormed(std::string_view("a\0b", 3)), std::string("a\0b", 3));
}

TEST(Text, EachByteThatIsNotUTF8BecomesAReplacement) {
    EXPECT_EQ(wellFormed("a\x80z"), "a\uFFFDz");
    EXPECT_EQ(wellFormed("\xC3"), "\uFFFD");           // cut off
    EXPECT_EQ(wellFormed("\xE2\x82"), "\uFFFD\uFFFD"); // likewise
    EXPECT_EQ(wellFormed("\xC0\x80"), "\uFFFD\uFFFD"); // overlong
    EXPECT_EQ(wellFormed("\xE0\x80\x80"), "\uFFFD\uFFFD\uFFFD");
    EXPECT_EQ(wellFormed("\xED\xA0\x80"), "\uFFFD\uFFFD\uFFFD"); // a surrogate
    EXPECT_EQ(wellFormed("\xF4\x90\x80\x80"), "\uFFFD\uFFFD\uFFFD\uFFFD");
    EXPECT_EQ(wellFormed("\xF8\xFF"), "\uFFFD\uFFFD");
    EXPECT_EQ(wellFormed("\xE2(\x82"), "\uFFFD(\uFFFD");
}

TEST(Text, FormatCharactersAreTakenOut) {
    EXPECT_EQ(withoutFormatCharacters("\u200EChat\u200F"), "Chat");
    EXPECT_EQ(withoutFormatCharacters("a\u00ADb\u200Bc\uFEFFd\U000E0001e\U000E007Ff"), "abcdef");
    EXPECT_EQ(withoutFormatCharacters("\u2060\u2064\u2066\u206F"), "");
}

TEST(Text, NeighboursOfFormatCharactersStay) {
    const std::string text = "\u00AC\u00AE\u05FF\u0606\u200A\u2010\u2065\U000E001F\U000E0080";
    EXPECT_EQ(withoutFormatCharacters(text), text);
}

TEST(Text, TakingOutFormatCharactersLeavesOtherBytesAlone) {
    EXPECT_EQ(withoutFormatCharacters("a\xFF\u200E\xE2\x80"), "a\xFF\xE2\x80");
}

} // namespace
} // namespace tavero
