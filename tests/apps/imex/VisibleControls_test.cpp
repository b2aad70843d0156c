#include "VisibleControls.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <string_view>

namespace imex::cli {

namespace {

std::string shown(const std::string& text) {
  std::ostringstream out;
  {
    const VisibleControls visible(out);
    out << text << std::flush;
  }
  return out.str();
}

TEST(VisibleControls, ordinaryTextPassesUnchanged) {
  for (const char* text : {"", "Line 1: accepted\n", "a\tb\n", "Müller – 100 €\n", "£\u00a0\u00bf", "\u202f\u2030",
                           "\U0001F600\U0010FFFF", "\u05d0\u0628"})
    EXPECT_EQ(text, shown(text));
}

TEST(VisibleControls, everyControlCharacterBecomesItsNumber) {
  EXPECT_EQ("\\x1b[31mred", shown("\x1b[31mred"));
  EXPECT_EQ("a\\x07\\x08\\x00b", shown(std::string("a\x07\x08\0b", 5)));
  EXPECT_EQ("\\x1f \\x7f~", shown("\x1f \x7f~"));
  EXPECT_EQ("\\x80\\x9b2J\\x9f\u00a0", shown("\u0080\u009b2J\u009f\u00a0"));
}

TEST(VisibleControls, controlCharacterIsSeenWhereverItStands) {
  for (std::size_t size = 0; size <= 70; ++size) {
    const std::string plain(size, 'x');
    EXPECT_EQ(plain + "\\x1b" + plain, shown(plain + '\x1b' + plain));
    EXPECT_EQ(plain + "\\x7f" + plain, shown(plain + '\x7f' + plain));
    EXPECT_EQ(plain + "\r\n" + plain, shown(plain + "\r\n" + plain));
    EXPECT_EQ(plain + "\\x0d" + plain + "\\x0d", shown(plain + '\r' + plain + '\r'));
    EXPECT_EQ(plain + "\\x9b\u00e9" + plain, shown(plain + "\u009b\u00e9" + plain));
  }
}

TEST(VisibleControls, characterMayComeInParts) {
  std::ostringstream out;
  {
    const VisibleControls visible(out);
    for (const char c : std::string_view("\U0001F600\u202e€"))
      out << c;
    out << "a\r"
        << "\n\xC2"
        << "\x9b"
        << "b\xC2"
        << "\xA3\r" << 'c';
  }
  EXPECT_EQ("\U0001F600\\u202e€"
            "a\r\n\\x9b"
            "b\u00a3\\x0d"
            "c",
            out.str());
}

TEST(VisibleControls, carriageReturnStaysBeforeALineEndAlone) {
  EXPECT_EQ("a\r\nb", shown("a\r\nb"));
  EXPECT_EQ("secret\\x0dshown", shown("secret\rshown"));
  EXPECT_EQ("\\x0d\r\n", shown("\r\r\n"));
  EXPECT_EQ("\\x0d", shown("\r"));
}

TEST(VisibleControls, separatorsAndMarksOfDirectionBecomeTheirNumbers) {
  EXPECT_EQ("a\\u2028b\\u2029", shown("a\u2028b\u2029"));
  EXPECT_EQ("\\u061c\\u200e\\u200f\\u202a\\u202e\\u2066\\u2069.", shown("\u061c\u200e\u200f\u202a\u202e\u2066\u2069."));
}

TEST(VisibleControls, byteThatIsNoTextBecomesItsNumber) {
  EXPECT_EQ("\\xc2", shown("\xC2"));
  EXPECT_EQ("\\xc2"
            "a",
            shown("\xC2"
                  "a"));
  EXPECT_EQ("\\xc2\r\n", shown("\xC2\r\n"));
  EXPECT_EQ("\\xe2\\x80é", shown("\xE2\x80é"));
  EXPECT_EQ("\\x80\\xff\\xf0\\x9f\\x98", shown("\x80\xFF\xF0\x9F\x98"));
  EXPECT_EQ("\\xed\\xa0\\x80 \\xe0\\x80\\x80 \\xc0\\xaf", shown("\xED\xA0\x80 \xE0\x80\x80 \xC0\xAF"));
}

TEST(VisibleControls, streamIsItselfAgainAfterwards) {
  std::ostringstream out;
  { const VisibleControls visible(out); }
  out << '\x1b';
  EXPECT_EQ("\x1b", out.str());
}

class Full : public std::streambuf {};

TEST(VisibleControls, failureOfTheOutputIsPassedOn) {
  for (const char* text : {"a", "\x1b", "\r"}) {
    Full full;
    std::ostream out(&full);
    {
      const VisibleControls visible(out);
      out << text;
    }
    EXPECT_FALSE(out) << testing::PrintToString(text);
  }
}

TEST(VisibleControls, failureBeforeIsNotForgotten) {
  std::ostringstream out;
  out.setstate(std::ios::badbit);
  { const VisibleControls visible(out); }
  EXPECT_FALSE(out);
}

} // namespace

} // namespace imex::cli
