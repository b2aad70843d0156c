#include "desk/iniText.h"

#include "platform/config/IniFile.h"

#include <gtest/gtest.h>

namespace imex::desk::test {

namespace {

TEST(DeskIniText, emptyFileGetsSectionsAndSettings) {
  EXPECT_EQ("[user]\nname = Ann\nid = agent1\n\n[service]\ntimeout = 5\n",
            withSettings("", {{"user", "name", "Ann"}, {"user", "id", "agent1"}, {"service", "timeout", "5"}}));
}

TEST(DeskIniText, settingIsChangedInItsPlaceAndTheRestStays) {
  const std::string text = "; of the office\n[Application]\ndirectory = /opt/corvana\n\n[USER]\n"
                           "  Name=Ann  \nphone = 555\n\n# the end\n";
  EXPECT_EQ("; of the office\n[Application]\ndirectory = /opt/corvana\n\n[USER]\n"
            "name = Bo\nphone = 555\n\n# the end\nid = b\n",
            withSettings(text, {{"user", "name", "Bo"}, {"user", "id", "b"}}));
}

TEST(DeskIniText, newSettingGoesToTheEndOfItsSection) {
  EXPECT_EQ("[user]\nname = Ann\nid = a\n\n[trace]\nfile = t\n",
            withSettings("[user]\nname = Ann\n\n[trace]\nfile = t\n", {{"user", "id", "a"}}));
}

TEST(DeskIniText, settingThatIsThereTwiceIsChangedTwice) {
  EXPECT_EQ("[user]\nid = c\nid = c\n", withSettings("[user]\nid = a\nid = b\n", {{"user", "id", "c"}}));
}

TEST(DeskIniText, sameKeyOfAnotherSectionStays) {
  EXPECT_EQ("id = 1\n[a]\nid = 2\n\n[user]\nid = 3\n", withSettings("id = 1\n[a]\nid = 2\n", {{"user", "id", "3"}}));
}

TEST(DeskIniText, lineThatIsNothingBecomesAComment) {
  const std::string text = withSettings("[user\nwhat is this\n= 5\nid = a\n", {{"user", "id", "b"}});
  EXPECT_EQ("; [user\n; what is this\n; = 5\nid = a\n\n[user]\nid = b\n", text);
  EXPECT_EQ("b", platform::IniFile(text, "test.ini").value("user", "id"));
}

TEST(DeskIniText, markAndCarriageReturnsGo) {
  EXPECT_EQ("[user]\nid = b\n", withSettings("\xEF\xBB\xBF[user]\r\nid = a\r\n", {{"user", "id", "b"}}));
}

TEST(DeskIniText, textThatBeginsLikeAMark_isNotTakenForOne) {
  const std::string mark = "\xEF\xBB\xBF";
  for (const std::string& before : {std::string(" "), mark, std::string("\t")}) {
    const std::string text = withSettings(before + mark + "k = a\n", {{"user", "id", "b"}});
    EXPECT_EQ(mark + mark + "k = a\n\n[user]\nid = b\n", text);
    EXPECT_EQ("a", platform::IniFile(text, "test.ini").value("", mark + "k"));
    EXPECT_EQ(text, withSettings(text, {{"user", "id", "b"}}));
  }
}

TEST(DeskIniText, everyValueIsReadAsItWasSet) {
  for (const char* value : {"", "Ann", "a = b", "; no comment", "[no section]", " blanks around ", "\ttab",
                            "\"quoted\"", "\"", "\"half", "Zo\xC3\xAB", "#1", "\"\"", "a \"b\" c"}) {
    const platform::IniFile read(withSettings("[user]\nid = a\n", {{"user", "name", value}}), "test.ini");
    EXPECT_EQ(value, read.value("user", "name"));
    EXPECT_EQ("a", read.value("user", "id"));
  }
}

} // namespace

} // namespace imex::desk::test
