#include "platform/qt/TextMeasure.h"

#include <QFontDatabase>
#include <QFontMetrics>
#include <QString>
#include <QStringList>

#include <gtest/gtest.h>

#include <random>

namespace {

using imex::platform::cellFont;
using imex::platform::TextMeasure;

int asked(const QFont& font, const QString& text) {
  return QFontMetrics(cellFont(font)).horizontalAdvance(text);
}

std::vector<QFont> someFonts() {
  std::vector<QFont> fonts{QFont()};
  for (const QString& family : QFontDatabase::families())
    for (const int pixels : {9, 13, 20}) {
      QFont font(family);
      font.setPixelSize(pixels);
      fonts.push_back(font);
      font.setBold(true);
      font.setItalic(true);
      fonts.push_back(font);
    }
  return fonts;
}

class Characters {
 public:
  /// `from` to `to`, without the control characters and the surrogates.
  QString text(int size, int from, int to) {
    QString result;
    while (result.size() < size) {
      const QChar c(static_cast<char16_t>(std::uniform_int_distribution(from, to)(m_random)));
      if (c.category() != QChar::Other_Control && !c.isSurrogate() && c != QChar::LineSeparator &&
          c != QChar::ParagraphSeparator)
        result += c;
    }
    return result;
  }

 private:
  std::mt19937 m_random{4711};
};

void expectSameWidths(int from, int to) {
  Characters characters;
  for (const QFont& font : someFonts()) {
    const TextMeasure measure(font);
    for (int size = 0; size < 60; ++size) {
      const QString text = characters.text(size, from, to);
      ASSERT_EQ(asked(font, text), measure.width(text.toStdString()))
          << font.toString().toStdString() << ": " << text.toStdString();
    }
  }
}

TEST(TextMeasure, ascii_isAsWideAsTheFontSays) {
  expectSameWidths(0x20, 0x7E);
}

TEST(TextMeasure, latin_isAsWideAsTheFontSays) {
  expectSameWidths(0x20, 0x17F);
}

TEST(TextMeasure, otherScripts_areAsWideAsTheFontSays) {
  expectSameWidths(0x20, 0x6FF); // with combining and right-to-left characters
}

TEST(TextMeasure, pairsThatAreKernedOrJoined_areAsWideAsTheFontSays) {
  for (const QFont& font : someFonts())
    for (const char* text :
         {"AVAVAToWaTe", "office affluent fi fl ffi", "f\xCC\x81", "a\xC2\xADz", "1.234,50 \xE2\x82\xAC"})
      EXPECT_EQ(asked(font, QString::fromUtf8(text)), TextMeasure(font).width(text)) << text;
}

TEST(TextMeasure, noText_hasNoWidth) {
  EXPECT_EQ(0, TextMeasure(QFont()).width(""));
  EXPECT_EQ(0, TextMeasure(QFont()).width("\r\n"));
}

TEST(TextMeasure, severalLines_areAsWideAsTheWidest) {
  const TextMeasure measure{QFont()};
  const int widest = asked(QFont(), QStringLiteral("the widest of them"));
  EXPECT_EQ(widest, measure.width("one\r\nthe widest of them\r\ntwo\r\n"));
  EXPECT_EQ(widest, measure.width("the widest of them\n\xE6\x97\xA5\r"));
}

TEST(TextMeasure, controlCharacters_areAsWideAsBlanks) {
  const TextMeasure measure{QFont()};
  EXPECT_EQ(asked(QFont(), QStringLiteral("a b c d")), measure.width("a\tb\x01"
                                                                     "c\x7F"
                                                                     "d"));
  EXPECT_EQ(asked(QFont(), QStringLiteral("a b")), measure.width("a\xC2\x81"
                                                                 "b"));
}

TEST(TextMeasure, textThatIsCutInACharacter_isMeasured) {
  const TextMeasure measure{QFont()};
  EXPECT_EQ(asked(QFont(), QString::fromUtf8("ab\xC3")), measure.width("ab\xC3"));
}

TEST(TextMeasure, itsFont_hasNeitherKerningNorJoining) {
  const QFont font = TextMeasure(QFont()).font();
  EXPECT_FALSE(font.kerning());
  EXPECT_TRUE(font.styleStrategy() & QFont::PreferNoShaping);
}

} // namespace
