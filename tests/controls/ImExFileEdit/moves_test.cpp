#include "EditorTest.h"

#include <algorithm>

namespace imex::test {

namespace {

class ImExFileEditMoves : public EditorTest {
 protected:
  ImExFileEditMoves() { open({"a|b|c", "d|e|f"}, 3); }

  GridCell current() { return cells().current(); }

  /// Goes to a cell with the arrows, from the first one.
  void goTo(GridCell target) {
    editor.reset();
    for (int step = 1; step < target.row; ++step)
      key(Qt::Key_Down);
    for (int step = 1; step < target.column; ++step)
      key(Qt::Key_Right);
    ASSERT_EQ(target, current());
    everything();
  }

  static Texts down(const std::string& arguments) {
    return {"> editor MSFlexGrid1_KeyDown(KeyCode = " + arguments + ")"};
  }
  static Texts up(const std::string& arguments) {
    return {"< editor MSFlexGrid1_KeyDown(KeyCode = " + arguments + ")"};
  }
  static Texts press13() { return traced("MSFlexGrid1_KeyPress(KeyAscii = 13)"); }
  static Texts step() { return traced("MSFlexGrid1_LeaveCell()") + traced("MSFlexGrid1_EnterCell()"); }
  static Texts arrow(const std::string& code) { return down(code + ", Shift = 0") + up(code + ", Shift = 0") + step(); }
};

// --- Entering cells -------------------------------------------------------------------------------------------------

TEST_F(ImExFileEditMoves, arrowLeavesAndEnters) {
  key(Qt::Key_Right);
  EXPECT_EQ(arrow("39"), happened());
  EXPECT_EQ((GridCell{1, 2}), current());
}

TEST_F(ImExFileEditMoves, firstCellEnteredIsNotLoadedAndLaterOnesAre) {
  EXPECT_EQ("", lineText());
  key(Qt::Key_Right);
  EXPECT_EQ("", lineText());
  key(Qt::Key_Right);
  EXPECT_EQ("c", lineText());
  key(Qt::Key_Down);
  EXPECT_EQ("f", lineText());
}

TEST_F(ImExFileEditMoves, firstCellEnteredIsTheEditCell) {
  key(Qt::Key_Right);
  line().setFocus();
  typeText("x");
  EXPECT_EQ((Texts{"1", "a", "x", "c"}), row(1));
}

TEST_F(ImExFileEditMoves, arrowsStopAtTheEdges) {
  key(Qt::Key_Left);
  key(Qt::Key_Up);
  EXPECT_EQ((GridCell{1, 1}), current()) << "neither numbers nor titles are entered";
  goTo({2, 3});
  key(Qt::Key_Right);
  key(Qt::Key_Down);
  EXPECT_EQ((GridCell{2, 3}), current());
}

TEST_F(ImExFileEditMoves, resetGoesToTheFirstCell) {
  goTo({2, 3});
  line().setFocus();
  editor.reset();
  EXPECT_EQ(traced("reset()"), happened());
  EXPECT_EQ((GridCell{1, 1}), current());
  EXPECT_EQ("", lineText());
  EXPECT_EQ("MSFlexGrid1", focus());
  key(Qt::Key_Right);
  EXPECT_EQ("", lineText()) << "editing is not active";
}

TEST_F(ImExFileEditMoves, resetMakesTheFirstCellTheEditCell) {
  goTo({2, 3});
  editor.reset();
  key(Qt::Key_Delete);
  EXPECT_EQ((Texts{"2", "d", "e", "f"}), row(2));
  EXPECT_EQ((Texts{"1", "", "b", "c"}), row(1));
}

TEST_F(ImExFileEditMoves, resetWithoutTheFocusReleasesIt) {
  cancel().setFocus();
  editor.reset();
  EXPECT_EQ("MSFlexGrid1", focus());
}

// --- Enter ----------------------------------------------------------------------------------------------------------

TEST_F(ImExFileEditMoves, enterGoesToTheNextColumn) {
  key(Qt::Key_Return);
  EXPECT_EQ(down("13, Shift = 0") + arrow("39") + up("13, Shift = 0") + press13(), happened());
  EXPECT_EQ((GridCell{1, 2}), current());
}

TEST_F(ImExFileEditMoves, enterOnTheNumberPadIsEnter) {
  key(Qt::Key_Enter, Qt::KeypadModifier);
  EXPECT_EQ((GridCell{1, 2}), current());
}

TEST_F(ImExFileEditMoves, enterInTheLastColumnGoesToTheNextRow) {
  goTo({1, 3});
  key(Qt::Key_Return);
  EXPECT_EQ((GridCell{2, 1}), current());
  EXPECT_EQ((host::GridSize{3, 4}), cells().size());
  const Texts left = down("37, Shift = 0") + up("37, Shift = 0");
  EXPECT_EQ(down("13, Shift = 0") + arrow("40") + arrow("37") + arrow("37") + left + up("13, Shift = 0") + press13(),
            happened())
      << "one Left more than there are columns to go";
  EXPECT_EQ("d", lineText());
}

TEST_F(ImExFileEditMoves, enterOnTheLastCellAddsARow) {
  goTo({2, 3});
  key(Qt::Key_Return);
  EXPECT_EQ((host::GridSize{4, 4}), cells().size());
  EXPECT_EQ((GridCell{3, 1}), current());
  EXPECT_EQ((Texts{"", "", "", ""}), row(3)) << "without a number";
}

TEST_F(ImExFileEditMoves, addedRowIsSavedOnlyWithText) {
  goTo({2, 3});
  key(Qt::Key_Return);
  click(save());
  EXPECT_EQ("a|b|c\r\nd|e|f\r\n", fileBytes());
  view().setFocus();
  typeText("new");
  click(save());
  EXPECT_EQ("a|b|c\r\nd|e|f\r\nnew||\r\n", fileBytes());
}

TEST_F(ImExFileEditMoves, enterInAGridOfOneColumn) {
  open({"a"}, 1);
  key(Qt::Key_Return);
  EXPECT_EQ((GridCell{2, 1}), current());
  EXPECT_EQ((host::GridSize{3, 2}), cells().size());
}

TEST_F(ImExFileEditMoves, enterInAGridWithoutRecordAddsOne) {
  open({}, 1);
  key(Qt::Key_Return);
  EXPECT_EQ((host::GridSize{2, 2}), cells().size());
  EXPECT_EQ((GridCell{1, 1}), current());
  typeText("x");
  click(save());
  EXPECT_EQ("x\r\n", fileBytes());
}

TEST_F(ImExFileEditMoves, otherEntersDoNotMove) {
  key(Qt::Key_Return, Qt::ControlModifier);
  key(Qt::Key_Return, Qt::AltModifier);
  EXPECT_EQ((GridCell{1, 1}), current());
}

// --- Back -----------------------------------------------------------------------------------------------------------

TEST_F(ImExFileEditMoves, shiftEnterGoesToThePreviousColumn) {
  goTo({2, 3});
  key(Qt::Key_Return, Qt::ShiftModifier);
  EXPECT_EQ((GridCell{2, 2}), current());
  EXPECT_EQ("e", lineText());
  const Texts lines = happened();
  const Texts move = down("13, Shift = 1") + arrow("39") + arrow("37") + up("13, Shift = 1") + press13();
  const Texts last(lines.end() - static_cast<std::ptrdiff_t>(std::min(move.size(), lines.size())), lines.end());
  EXPECT_EQ(move, last);
}

TEST_F(ImExFileEditMoves, shiftEnterInTheFirstColumnGoesUp) {
  goTo({2, 1});
  key(Qt::Key_Return, Qt::ShiftModifier);
  EXPECT_EQ((GridCell{1, 1}), current());
  const Texts lines = happened();
  const Texts move = down("13, Shift = 1") + up("13, Shift = 1") + press13();
  EXPECT_EQ(move, Texts(lines.end() - 4, lines.end())) << "no keystrokes are sent";
}

TEST_F(ImExFileEditMoves, editLineFollowsTheMoveUp) {
  goTo({2, 1});
  key(Qt::Key_Return, Qt::ShiftModifier);
  EXPECT_EQ("a", lineText());
  key(Qt::Key_Delete);
  EXPECT_EQ((Texts{"1", "", "b", "c"}), row(1));
  EXPECT_EQ((Texts{"2", "d", "e", "f"}), row(2));
}

TEST_F(ImExFileEditMoves, shiftEnterOnTheFirstCellDoesNothing) {
  key(Qt::Key_Return, Qt::ShiftModifier);
  EXPECT_EQ((GridCell{1, 1}), current());
  EXPECT_EQ("MSFlexGrid1", focus());
}

/// A keyboard that says of Shift what the test wants.
class ShiftKeyboard : public host::Keyboard {
 public:
  explicit ShiftKeyboard(host::Keyboard& real) : m_real(real) {}

  bool isDown(host::VirtualKey key) const override {
    return key == host::VirtualKey::shift ? isShiftDown : m_real.isDown(key);
  }
  void sendKeys(std::string_view keys) override { m_real.sendKeys(keys); }

  bool isShiftDown = false;

 private:
  host::Keyboard& m_real;
};

TEST_F(ImExFileEditMoves, shiftIsAskedOfTheKeyboardAndNotOfTheEvent) {
  ShiftKeyboard shift(keyboard);
  host.services.keyboard = &shift;
  host.install();
  goTo({1, 2});
  key(Qt::Key_Return, Qt::ShiftModifier);
  EXPECT_EQ((GridCell{1, 3}), current());
  shift.isShiftDown = true;
  key(Qt::Key_Return);
  EXPECT_EQ((GridCell{1, 2}), current());
  host.services.keyboard = &keyboard;
  host.install();
}

// --- Beyond 16 bits -------------------------------------------------------------------------------------------------

TEST_F(ImExFileEditMoves, rowThat16BitsDoNotCountIsAnOverflow) {
  open(Texts(32767, "x"), 1);
  cells().setCurrent({32767, 1});
  everything();
  key(Qt::Key_Return);
  ASSERT_EQ(1U, host.messageBox.boxes.size());
  EXPECT_EQ(
      (Box{"An error has occurred while navigating between cells of the row view.", 48, "Error Number: 6 - Overflow"}),
      host.messageBox.boxes.front());
  EXPECT_EQ((host::GridSize{32769, 2}), cells().size());
  EXPECT_EQ((GridCell{32768, 1}), current());
  click(save());
  EXPECT_EQ(textLines(Texts(32767, "x")), fileBytes()) << "nothing is lost";
}

// --- Tab ------------------------------------------------------------------------------------------------------------

TEST_F(ImExFileEditMoves, tabGoesToTheNextCellAndStaysInTheGrid) {
  key(Qt::Key_Tab);
  EXPECT_EQ((GridCell{1, 2}), current());
  EXPECT_EQ("MSFlexGrid1", focus());
  EXPECT_EQ(traced("MSFlexGrid1_KeyDown(KeyCode = 9, Shift = 0)") + arrow("39"), happened());
}

TEST_F(ImExFileEditMoves, shiftTabGoesToThePreviousCell) {
  goTo({2, 2});
  key(Qt::Key_Tab, Qt::ShiftModifier);
  EXPECT_EQ((GridCell{2, 1}), current());
  EXPECT_EQ("MSFlexGrid1", focus());
  key(Qt::Key_Backtab, Qt::ShiftModifier);
  EXPECT_EQ((GridCell{1, 1}), current());
  EXPECT_EQ("MSFlexGrid1", focus());
}

TEST_F(ImExFileEditMoves, tabOnTheLastCellAddsARow) {
  goTo({2, 3});
  key(Qt::Key_Tab);
  EXPECT_EQ((GridCell{3, 1}), current());
  EXPECT_EQ((host::GridSize{4, 4}), cells().size());
}

TEST_F(ImExFileEditMoves, tabWalksThroughTheWholeFile) {
  std::vector<std::pair<int, int>> visited;
  for (int step = 0; step < 5; ++step) {
    key(Qt::Key_Tab);
    visited.emplace_back(current().row, current().column);
  }
  EXPECT_EQ((std::vector<std::pair<int, int>>{{1, 2}, {1, 3}, {2, 1}, {2, 2}, {2, 3}}), visited);
}

TEST_F(ImExFileEditMoves, focusThatIsLostWithoutTabMovesNothing) {
  line().setFocus();
  EXPECT_EQ((GridCell{1, 1}), current());
  EXPECT_EQ("txtChangeField", focus());
}

// --- The way round --------------------------------------------------------------------------------------------------

TEST_F(ImExFileEditMoves, tabLeadsFromCancelToTheLineAndOnToTheGrid) {
  cancel().setFocus();
  everything();
  key(Qt::Key_Tab);
  EXPECT_EQ("txtChangeField", focus());
  EXPECT_EQ(traced("cmdCancel_KeyDown()") + traced("txtChangeField_KeyUp()"), happened());
  key(Qt::Key_Tab);
  EXPECT_EQ("MSFlexGrid1", focus());
  EXPECT_EQ((GridCell{1, 1}), current()) << "arriving in the grid moves nothing";
}

TEST_F(ImExFileEditMoves, shiftTabLeadsFromTheLineToCancelAndSave) {
  line().setFocus();
  everything();
  key(Qt::Key_Tab, Qt::ShiftModifier);
  EXPECT_EQ("cmdCancel", focus());
  key(Qt::Key_Tab, Qt::ShiftModifier);
  EXPECT_EQ("cmdOK", focus());
  key(Qt::Key_Tab, Qt::ShiftModifier);
  EXPECT_EQ("MSFlexGrid1", focus());
  EXPECT_EQ((GridCell{1, 1}), current());
}

TEST_F(ImExFileEditMoves, tabBackwardsFromTheLineIsTheSameKey) {
  line().setFocus();
  key(Qt::Key_Backtab, Qt::ShiftModifier);
  EXPECT_EQ("cmdCancel", focus());
}

TEST_F(ImExFileEditMoves, otherKeysOnCancelAreTraced) {
  cancel().setFocus();
  everything();
  key(Qt::Key_X);
  EXPECT_EQ(traced("cmdCancel_KeyDown()"), happened());
  EXPECT_EQ("cmdCancel", focus());
}

TEST_F(ImExFileEditMoves, spaceAndEnterPressTheButtons) {
  cancel().setFocus();
  key(Qt::Key_Space);
  key(Qt::Key_Return);
  const Texts lines = happened();
  EXPECT_EQ(2, std::count(lines.begin(), lines.end(), "* cancel"));
}

TEST_F(ImExFileEditMoves, lettersUnderAltLeadToTheParts) {
  key(Qt::Key_R, Qt::AltModifier);
  EXPECT_EQ("txtChangeField", focus());
  key(Qt::Key_C, Qt::AltModifier);
  EXPECT_TRUE(QTest::qWaitFor([&] { return std::ranges::count(host.trace->lines, "* cancel") == 1; }));
}

} // namespace

} // namespace imex::test
