#include "controls/ImExFileEdit/editorLayout.h"

#include "support/raised.h"

#include <gtest/gtest.h>

namespace imex::test {

namespace {

TEST(EditorLayout, halvesGoToTheEvenNumber) {
  EXPECT_EQ(0, roundHalfToEven(0.5));
  EXPECT_EQ(2, roundHalfToEven(1.5));
  EXPECT_EQ(2, roundHalfToEven(2.5));
  EXPECT_EQ(-2, roundHalfToEven(-1.5));
  EXPECT_EQ(3, roundHalfToEven(2.51));
  EXPECT_EQ(2, roundHalfToEven(2.49));
}

TEST(EditorLayout, lineAndGridLeaveEightPixelsOnEitherSide) {
  EXPECT_EQ(8, kGridLeft);
  EXPECT_EQ(624, partWidth(640));
  EXPECT_EQ(0, partWidth(16));
  EXPECT_EQ(-1, partWidth(15));
}

TEST(EditorLayout, gridLeaves58Pixels) {
  EXPECT_EQ(422, gridHeight(480));
  EXPECT_EQ(0, gridHeight(58));
  EXPECT_EQ(-1, gridHeight(57));
}

TEST(EditorLayout, buttonsStandOneAndAHalfPixelsAboveTheBottom) {
  EXPECT_EQ(454, buttonTop(480, 24)); // 454.5
  EXPECT_EQ(456, buttonTop(481, 24)); // 455.5
  EXPECT_EQ(454, buttonTop(480, 25)); // 453.5
}

TEST(EditorLayout, buttonsStandOnEitherSideOfTheCentre) {
  EXPECT_EQ(238, saveLeft(640, 80)); // 320 - 2 - 80
  EXPECT_EQ(322, cancelLeft(640));
  EXPECT_EQ(238, saveLeft(641, 80)); // 320.5 is 320
  EXPECT_EQ(322, cancelLeft(641));
  EXPECT_EQ(240, saveLeft(643, 80)); // 321.5 is 322
  EXPECT_EQ(324, cancelLeft(643));
  EXPECT_EQ(238, saveLeft(639, 80)); // 319.5 is 320
}

TEST(EditorLayout, negativeMeasureIsError5) {
  EXPECT_EQ(0, requiredMeasure(0));
  EXPECT_EQ(7, requiredMeasure(7));
  EXPECT_EQ(5, raisedNumber([] { requiredMeasure(-1); }));
}

TEST(EditorLayout, cellIsTenPixelsWiderThanItsText) {
  EXPECT_EQ(150, cellWidth(0, 15));
  EXPECT_EQ(900, cellWidth(50, 15));
  EXPECT_EQ(20, cellWidth(0, 2));
}

TEST(EditorLayout, cellWidthIsRoundedHalfToEven) {
  EXPECT_EQ(152, cellWidth(0.1, 15));  // 151.5
  EXPECT_EQ(52, cellWidth(0.5, 5));    // 52.5
  EXPECT_EQ(126, cellWidth(2.55, 10)); // 125.5
}

TEST(EditorLayout, cellWidthIsASixteenBitNumber) {
  EXPECT_EQ(32766, cellWidth(32756, 1));
  EXPECT_EQ(32767, cellWidth(32757, 1));
  EXPECT_EQ(6, raisedNumber([] { (void)cellWidth(32758, 1); }));
  EXPECT_EQ(6, raisedNumber([] { (void)cellWidth(1e12, 15); }));
}

} // namespace

} // namespace imex::test
