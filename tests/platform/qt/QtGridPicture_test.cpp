#include "GridTest.h"
#include "platform/qt/cellText.h"

#include <QImage>
#include <QPainter>
#include <QPalette>

#include <set>

namespace {

using namespace imex::test;

QPalette darkPalette() {
  QPalette palette(QColor(45, 45, 48));
  palette.setColor(QPalette::Base, QColor(30, 30, 32));
  return palette;
}

/// What is seen of cells, in pixels.
class QtGridPicture : public GridTest {
 protected:
  QRect rect(GridCell cell) const { return grid.visualRect(grid.model()->index(cell.row - 1, cell.column - 1)); }

  QImage picture() {
    QApplication::processEvents();
    return grid.viewport()->grab().toImage();
  }

  /// A cell's own picture.
  QImage picture(GridCell cell) {
    const QImage all = picture();
    const QRect at = rect(cell);
    const qreal scale = all.devicePixelRatio();
    return all.copy(QRect((QPointF(at.topLeft()) * scale).toPoint(), at.size() * scale));
  }

  void nameCells(GridCell a, GridCell b, const char* text) {
    cells.setText(a, text);
    cells.setText(b, text);
  }

  /// Pixels of the cell that are like this colour or darker than the ground.
  static int inked(const QImage& image, const QColor& ground) {
    int count = 0;
    for (int y = 0; y < image.height(); ++y)
      for (int x = 0; x < image.width(); ++x)
        count += std::abs(qGray(image.pixel(x, y)) - qGray(ground.rgb())) > 90 ? 1 : 0;
    return count;
  }
};

TEST_F(QtGridPicture, theMark_isSeenWithoutTheFocusInLightAndDark) {
  nameCells({3, 1}, {4, 1}, "text");
  cells.setCurrent({3, 1});
  cells.setEmphasis(true);
  cells.setCurrent({5, 3});
  grid.clearFocus();
  for (const QPalette& palette : {QPalette(QColor(240, 240, 240)), darkPalette()}) {
    grid.setPalette(palette);
    const QImage marked = picture({3, 1});
    const QImage plain = picture({4, 1});
    EXPECT_NE(plain, marked);
    // A frame at every side, that stands out from the ground also to who sees no colours.
    const int ground = qGray(plain.pixel(plain.width() - 3, plain.height() / 2));
    for (const QPoint& side : {QPoint(0, marked.height() / 2), QPoint(marked.width() - 1, marked.height() / 2),
                               QPoint(marked.width() / 2, 0), QPoint(marked.width() / 2, marked.height() - 1)})
      EXPECT_GT(std::abs(qGray(marked.pixel(side)) - ground), 40);
  }
}

TEST_F(QtGridPicture, theMark_staysWithItsCellAndGoesWithItsRow) {
  nameCells({3, 1}, {4, 1}, "text");
  nameCells({2, 1}, {5, 1}, "text");
  cells.setCurrent({3, 1});
  cells.setEmphasis(true);
  cells.setCurrent({5, 3});
  const QImage marked = picture({3, 1});
  const QImage plain = picture({4, 1});
  cells.removeRow(2);
  EXPECT_EQ(marked, picture({2, 1}));
  EXPECT_EQ(plain, picture({3, 1}));
  cells.removeRow(2);
  EXPECT_EQ(plain, picture({2, 1}));
}

TEST_F(QtGridPicture, theMark_canBeTakenAway) {
  nameCells({3, 1}, {4, 1}, "text");
  cells.setCurrent({3, 1});
  cells.setEmphasis(true);
  cells.setEmphasis(false);
  cells.setCurrent({5, 3});
  EXPECT_EQ(picture({4, 1}), picture({3, 1}));
}

TEST_F(QtGridPicture, aMessage_isToldApartByMoreThanColour) {
  cells.setCurrent({5, 1});
  nameCells({3, 2}, {4, 2}, "message");
  const QImage before = picture({3, 2});
  grid.setMessageColumn(2);
  const QImage message = picture({3, 2});
  EXPECT_NE(before, message);
  // A bar from top to bottom.
  const int ground = qGray(before.pixel(1, 1));
  for (const int y : {0, message.height() / 2, message.height() - 1})
    EXPECT_GT(std::abs(qGray(message.pixel(1, y)) - ground), 60);
  cells.setText({3, 2}, "");
  grid.setMessageColumn(-1);
  const QImage empty = picture({3, 2});
  grid.setMessageColumn(2);
  EXPECT_EQ(empty, picture({3, 2}));
}

TEST_F(QtGridPicture, severalLines_areDrawnBelowEachOther) {
  cells.setCurrent({5, 3});
  layout.setRowHeight(3, 1500);
  layout.setRowHeight(4, 1500);
  cells.setText({3, 1}, "one\r\ntwo\r\n");
  cells.setText({4, 1}, "one");
  const QColor ground = grid.palette().color(QPalette::Base);
  EXPECT_GT(inked(picture({3, 1}), ground), inked(picture({4, 1}), ground) * 3 / 2);
}

TEST_F(QtGridPicture, aLongLine_isBrokenWhereThatIsAsked) {
  cells.setCurrent({5, 3});
  layout.setRowHeight(3, 1500);
  cells.setText({3, 1}, "a line that is much too long for a column of this width");
  const QColor ground = grid.palette().color(QPalette::Base);
  const int cut = inked(picture({3, 1}), ground);
  layout.setTextWrap(true);
  EXPECT_GT(inked(picture({3, 1}), ground), cut * 2);
}

TEST_F(QtGridPicture, aTextOfItsMeasuredWidth_isNotCut) {
  const std::string text = "Wabash Manufacturing, Inc. of Illinois";
  cells.setText({3, 1}, text);
  cells.setCurrent({5, 3});
  const double perPixel = imex::platform::twipsPerPixel(grid);
  const auto inkAt = [&](int pixels) {
    layout.setColumnWidth(1, static_cast<int>(pixels * perPixel));
    return inked(picture({3, 1}), grid.palette().color(QPalette::Base));
  };
  const int width = grid.measure().width(text) + 10;
  EXPECT_EQ(inkAt(width + 40), inkAt(width));
  EXPECT_NE(inkAt(width + 40), inkAt(width - 10));
}

TEST_F(QtGridPicture, aMarkedTextOfItsMeasuredWidth_isWholeAndBold) {
  const std::string text = "Wabash Manufacturing, Inc. of Illinois!";
  cells.setText({3, 1}, text);
  const int width = grid.measure().width(text) + 10;
  layout.setColumnWidth(1, static_cast<int>(width * imex::platform::twipsPerPixel(grid)));
  const QColor ground = grid.palette().color(QPalette::Base);
  // Only the last letters, which would be the first to go.
  const auto lastLetters = [&] {
    const QImage image = picture({3, 1});
    const int last = image.width() * 9 / 10;
    return inked(image.copy(last, 4, image.width() - last - 8, image.height() - 8), ground);
  };
  cells.setCurrent({3, 1});
  const int plain = lastLetters();
  cells.setEmphasis(true);
  EXPECT_GT(lastLetters(), plain);
}

TEST_F(QtGridPicture, aHugeText_isDrawnByItsBeginning) {
  cells.setCurrent({5, 3});
  cells.setText({3, 1}, std::string(2'000'000, 'x'));
  cells.setText({4, 1}, std::string(1000, 'x'));
  EXPECT_EQ(picture({4, 1}), picture({3, 1}));
}

TEST(CellText, lineBreaks_areOneCharacterAndNoneAtTheEnd) {
  using imex::platform::shownText;
  EXPECT_EQ(QStringLiteral("a\nb\nc\nd"), shownText("a\r\nb\rc\nd\r\n\r\n"));
  EXPECT_EQ(QString(), shownText("\r\n"));
  EXPECT_EQ(QStringLiteral("\na"), shownText("\r\na"));
}

TEST(CellText, controlCharacters_areBlanks) {
  using imex::platform::shownText;
  EXPECT_EQ(QStringLiteral("a b c d e f"), shownText("a\tb\x01"
                                                     "c\x7F"
                                                     "d\xC2\x81"
                                                     "e\xE2\x80\xA8"
                                                     "f"));
  EXPECT_EQ(QStringLiteral("a b"), shownText(std::string_view("a\0b", 3)));
}

TEST(CellText, theBeginning_endsWithAWholeCharacter) {
  using imex::platform::beginning;
  const std::string accents = "aaa\xC3\xA9\xC3\xA9\xC3\xA9";
  EXPECT_EQ("aaa\xC3\xA9", beginning(accents, 1));
  EXPECT_EQ(accents, beginning(accents, 100));
}

} // namespace
