#include "controls/ImExDocView/layout.h"

#include "support/raised.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace imex::test {

namespace {

/// "5,5 630x440"
std::string text(const QRect& rect) {
  const auto number = [](int value) { return std::to_string(value); };
  return number(rect.x()) + ',' + number(rect.y()) + ' ' + number(rect.width()) + 'x' + number(rect.height());
}

struct Figures {
  QSize inner;
  QSize ok;
  QRect browser;
  QRect print;
  QRect okButton;
};

TEST(ViewerLayout, figures) {
  const std::vector<Figures> all = {
      {{640, 480}, {80, 28}, {5, 5, 630, 440}, {233, 450, 80, 28}, {327, 450, 80, 28}},
      // Half of 401 is 200, of 403 is 202: the even neighbour.
      {{401, 300}, {80, 28}, {5, 5, 391, 260}, {113, 270, 80, 28}, {207, 270, 80, 28}},
      {{403, 300}, {80, 28}, {5, 5, 393, 260}, {115, 270, 80, 28}, {209, 270, 80, 28}},
      {{402, 301}, {80, 28}, {5, 5, 392, 261}, {114, 271, 80, 28}, {208, 271, 80, 28}},
      // Half of 75 is 38, of 73 is 36.
      {{400, 300}, {75, 25}, {5, 5, 390, 260}, {115, 273, 75, 25}, {209, 273, 75, 25}},
      {{401, 300}, {73, 25}, {5, 5, 391, 260}, {117, 273, 73, 25}, {211, 273, 73, 25}},
      // Where the buttons do not fit, they stand outside all the same.
      {{10, 40}, {80, 28}, {5, 5, 0, 0}, {-82, 10, 80, 28}, {12, 10, 80, 28}},
      {{11, 41}, {80, 28}, {5, 5, 1, 1}, {-81, 11, 80, 28}, {13, 11, 80, 28}},
  };
  for (const Figures& figures : all) {
    const ViewerLayout layout = viewerLayout(figures.inner, figures.ok);
    const int width = figures.inner.width();
    EXPECT_EQ(text(figures.browser), text(layout.browser)) << width;
    EXPECT_EQ(text(figures.print), text(layout.print)) << width;
    EXPECT_EQ(text(figures.okButton), text(layout.ok)) << width;
  }
}

TEST(ViewerLayout, sizesInWhichTheBrowserDoesNotFitAreError5) {
  for (const QSize& inner : {QSize(9, 100), QSize(100, 39), QSize(9, 39), QSize(0, 0)}) {
    const auto error = raised([&] { (void)viewerLayout(inner, {80, 28}); });
    ASSERT_TRUE(error) << inner.width();
    EXPECT_EQ(5, error->number());
    EXPECT_EQ("ImExDocView", error->source());
  }
  for (const QSize& inner : {QSize(10, 100), QSize(11, 100), QSize(100, 40), QSize(100, 41)})
    EXPECT_FALSE(raised([&] { (void)viewerLayout(inner, {80, 28}); })) << inner.width();
}

} // namespace

} // namespace imex::test
