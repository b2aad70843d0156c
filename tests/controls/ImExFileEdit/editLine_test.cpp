#include "EditorTest.h"

#include <QClipboard>
#include <QLabel>

namespace imex::test {

namespace {

const std::string kKeyDownFailed = "An error has occurred while processing the key down event within the cell editor.";

Texts keyDown(int code, int shift) {
  const std::string label =
      "txtChangeField_KeyDown(KeyCode = " + std::to_string(code) + ", Shift = " + std::to_string(shift) + ")";
  return {"> editor " + label, "< editor " + label};
}

Texts keyPress(int ascii) {
  const std::string label = "txtChangeField_KeyPress( KeyAscii = " + std::to_string(ascii) + ")";
  return {"> editor " + label, "< editor " + label};
}

const Texts kKeyUp = {"> editor txtChangeField_KeyUp()", "< editor txtChangeField_KeyUp()"};

class ImExFileEditLine : public EditorTest {
 protected:
  ImExFileEditLine() {
    open({"a|b|c", "d|e|f"}, 3);
    key(Qt::Key_Right);
    key(Qt::Key_Right);
    key(Qt::Key_Left); // cell 1, 2 is the edit cell and its text is in the line
    line().setFocus();
    everything();
  }

  void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier, const char* text = "") {
    QKeyEvent event(QEvent::KeyPress, key, modifiers, QString::fromUtf8(text));
    QApplication::sendEvent(&line(), &event);
  }
  void release(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier, const char* text = "") {
    QKeyEvent event(QEvent::KeyRelease, key, modifiers, QString::fromUtf8(text));
    QApplication::sendEvent(&line(), &event);
  }
};

TEST_F(ImExFileEditLine, showsTheTextOfItsCell) {
  EXPECT_EQ("b", lineText());
}

TEST_F(ImExFileEditLine, cellFollowsWhatIsTyped) {
  typeText("xy");
  EXPECT_EQ("bxy", cell(1, 2));
  key(Qt::Key_Home);
  typeText("é1");
  EXPECT_EQ(lineText(), cell(1, 2));
  key(Qt::Key_Delete);
  EXPECT_EQ(lineText(), cell(1, 2));
}

TEST_F(ImExFileEditLine, cellFollowsWhenTheKeyComesUp) {
  QTest::keyPress(&line(), 'x');
  EXPECT_EQ("bx", lineText());
  EXPECT_EQ("b", cell(1, 2));
  QTest::keyRelease(&line(), 'x');
  EXPECT_EQ("bx", cell(1, 2));
}

TEST_F(ImExFileEditLine, letterTracesThreeHandlers) {
  key(Qt::Key_X);
  EXPECT_EQ(keyDown('X', 0) + keyPress('x') + kKeyUp, happened());
}

TEST_F(ImExFileEditLine, letterSetsTheModifiedFlagAndAFunctionKeyOnlyWithACodeAsLow) {
  EXPECT_FALSE(editor.isModified());
  key(Qt::Key_Backspace); // 8
  EXPECT_FALSE(editor.isModified());
  key(Qt::Key_Escape); // 27
  EXPECT_FALSE(editor.isModified());
  key(Qt::Key_NumLock); // 144
  EXPECT_FALSE(editor.isModified());
  key(Qt::Key_Space); // 32
  EXPECT_TRUE(editor.isModified());
}

TEST_F(ImExFileEditLine, keyCode126IsTheLastThatSetsTheModifiedFlag) {
  press(Qt::Key_F16); // 127
  EXPECT_FALSE(editor.isModified());
  press(Qt::Key_F15); // 126
  EXPECT_TRUE(editor.isModified());
}

TEST_F(ImExFileEditLine, keyThatChangesNothingWritesNothing) {
  cells().setText({1, 2}, "changed by code");
  key(Qt::Key_Left);
  key(Qt::Key_Home);
  key(Qt::Key_Shift);
  EXPECT_EQ("changed by code", cell(1, 2));
}

// --- Enter ----------------------------------------------------------------------------------------------------------

TEST_F(ImExFileEditLine, enterGoesBackToTheGrid) {
  key(Qt::Key_Return);
  EXPECT_EQ(keyDown(13, 0) + keyPress(13), happened()) << "the key comes up in the grid";
  EXPECT_EQ("MSFlexGrid1", focus());
  EXPECT_EQ((GridCell{1, 2}), cells().current());
}

TEST_F(ImExFileEditLine, enterTakesTheText) {
  QTest::keyPress(&line(), 'x');
  key(Qt::Key_Return);
  EXPECT_EQ("bx", cell(1, 2));
}

TEST_F(ImExFileEditLine, enterBeforeACellWasEnteredTakesNothing) {
  editor.reset();
  line().setFocus();
  QTest::keyPress(&line(), 'x');
  key(Qt::Key_Return);
  EXPECT_EQ("a", cell(1, 1));
  EXPECT_EQ("MSFlexGrid1", focus());
}

TEST_F(ImExFileEditLine, typingBeforeACellWasEnteredGoesIntoTheFirst) {
  editor.reset();
  line().setFocus();
  typeText("x");
  EXPECT_EQ("x", cell(1, 1));
}

TEST_F(ImExFileEditLine, enterOfALineThatWasNotLoadedKeepsTheCell) {
  editor.reset();
  key(Qt::Key_Right); // the first cell entered is not loaded
  line().setFocus();
  key(Qt::Key_Return);
  EXPECT_EQ("b", cell(1, 2));
}

TEST_F(ImExFileEditLine, enterIsSwallowedWithShiftToo) {
  int reached = 0;
  QObject::connect(&line(), &QLineEdit::returnPressed, [&] { ++reached; });
  key(Qt::Key_Return, Qt::ShiftModifier);
  EXPECT_EQ(0, reached);
  EXPECT_EQ("txtChangeField", focus());
  EXPECT_EQ("b", lineText());
  const Texts shift = keyDown(16, 1);
  EXPECT_EQ(shift + keyDown(13, 1) + keyPress(13) + kKeyUp + kKeyUp, happened());
}

TEST_F(ImExFileEditLine, enterThatComesUpInTheLineTakesTheText) {
  line().setText(QStringLiteral("new"));
  release(Qt::Key_Return);
  EXPECT_EQ("new", cell(1, 2));
}

// --- The vertical bar -----------------------------------------------------------------------------------------------

TEST_F(ImExFileEditLine, barIsUndone) {
  key(Qt::Key_Home);
  everything();
  QTest::keyPress(&line(), Qt::Key_Bar);
  EXPECT_EQ("|b", lineText());
  QTest::keyRelease(&line(), Qt::Key_Bar);
  EXPECT_EQ("b", lineText());
  EXPECT_EQ("b", cell(1, 2));
  EXPECT_EQ(1, line().cursorPosition()) << "the caret is at the end";
  EXPECT_EQ(keyDown(220, 1) + keyPress(124) + kKeyUp, happened());
}

TEST_F(ImExFileEditLine, barIsTypedWhereItIsNotTheDelimiter) {
  editor.DelimiterAscii(9);
  key(Qt::Key_Bar);
  EXPECT_EQ("b|", lineText());
  EXPECT_EQ("b|", cell(1, 2));
}

TEST_F(ImExFileEditLine, barOfAnotherKeyboardIsUndone) {
  press(Qt::Key_Less, Qt::GroupSwitchModifier, "|");
  EXPECT_EQ("b|", lineText());
  release(Qt::Key_Less, Qt::NoModifier, "<");
  EXPECT_EQ("b", lineText());
  EXPECT_EQ("b", cell(1, 2));
}

TEST_F(ImExFileEditLine, barIsUndoneWhenShiftComesUpFirst) {
  press(Qt::Key_Bar, Qt::ShiftModifier, "|");
  release(Qt::Key_Shift);
  release(Qt::Key_Backslash, Qt::NoModifier, "\\");
  EXPECT_EQ("b", lineText());
  EXPECT_EQ("b", cell(1, 2));
}

TEST_F(ImExFileEditLine, barThatIsHeldIsUndoneWhole) {
  press(Qt::Key_Bar, Qt::ShiftModifier, "|");
  press(Qt::Key_Bar, Qt::ShiftModifier, "|");
  press(Qt::Key_Bar, Qt::ShiftModifier, "|");
  EXPECT_EQ("b|||", lineText());
  release(Qt::Key_Bar, Qt::ShiftModifier, "|");
  EXPECT_EQ("b", lineText());
}

TEST_F(ImExFileEditLine, barIsUndoneByTheNextKey) {
  press(Qt::Key_Bar, Qt::ShiftModifier, "|");
  press(Qt::Key_X, Qt::NoModifier, "x");
  release(Qt::Key_Bar, Qt::ShiftModifier, "|");
  release(Qt::Key_X, Qt::NoModifier, "x");
  EXPECT_EQ("bx", cell(1, 2));
}

TEST_F(ImExFileEditLine, backslashIsAnOrdinaryKey) {
  key(Qt::Key_Backslash);
  EXPECT_EQ("b\\", cell(1, 2));
}

// --- Text without keys ----------------------------------------------------------------------------------------------

TEST_F(ImExFileEditLine, textFromTheMouseIsTakenAtOnce) {
  QApplication::clipboard()->setText(QStringLiteral("pasted"));
  line().paste();
  EXPECT_EQ("bpasted", cell(1, 2));
  EXPECT_TRUE(editor.isModified());
}

TEST_F(ImExFileEditLine, textFromAnInputMethodIsTakenAtOnce) {
  QInputMethodEvent event;
  event.setCommitString(QStringLiteral("中"));
  QApplication::sendEvent(&line(), &event);
  EXPECT_EQ("b中", cell(1, 2));
}

TEST_F(ImExFileEditLine, textPastedWithKeysIsTaken) {
  QApplication::clipboard()->setText(QStringLiteral("pasted"));
  key(Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ("bpasted", cell(1, 2));
}

TEST_F(ImExFileEditLine, fieldOfAnyLengthIsKept) {
  const std::string field(40000, 'x');
  cells().setText({2, 2}, field);
  view().setFocus();
  key(Qt::Key_Down);
  line().setFocus();
  key(Qt::Key_End);
  typeText("y");
  EXPECT_EQ(field + "y", cell(2, 2));
}

// --- Double click ---------------------------------------------------------------------------------------------------

TEST_F(ImExFileEditLine, doubleClickTakesTheTextToTheLine) {
  doubleClickCell(2, 3);
  EXPECT_EQ("txtChangeField", focus());
  EXPECT_EQ("f", lineText());
  EXPECT_EQ("f", toCore(line().selectedText()));
  typeText("new");
  EXPECT_EQ((Texts{"2", "d", "e", "new"}), row(2));
}

// --- Which cell -----------------------------------------------------------------------------------------------------

TEST_F(ImExFileEditLine, saysWhichCellItIsBoundTo) {
  EXPECT_EQ("Row 1, Title 2", toCore(line().accessibleName()));
  view().setFocus();
  key(Qt::Key_Down);
  EXPECT_EQ("Row 2, Title 2", toCore(line().accessibleName()));
  EXPECT_EQ("&Row 2, Title 2", toCore(child<QLabel>("lblEditCell").text()));
}

TEST_F(ImExFileEditLine, rowIsNamedByItsNumber) {
  pressRowNumber(1);
  key(Qt::Key_Delete);
  EXPECT_EQ("Row 2, Title 2", toCore(line().accessibleName()));
}

TEST_F(ImExFileEditLine, rowThatWasAddedIsNew) {
  view().setFocus();
  key(Qt::Key_Down);
  key(Qt::Key_Right);
  key(Qt::Key_Return);
  EXPECT_EQ("New row, Title 1", toCore(line().accessibleName()));
}

TEST_F(ImExFileEditLine, columnWithoutTitleIsNamedByItsNumber) {
  cells().setText({0, 3}, "");
  view().setFocus();
  key(Qt::Key_Right);
  EXPECT_EQ("Row 1, column 3", toCore(line().accessibleName()));
}

TEST_F(ImExFileEditLine, ampersandOfATitleIsSeen) {
  cells().setText({0, 3}, "P&L");
  view().setFocus();
  key(Qt::Key_Right);
  EXPECT_EQ("Row 1, P&L", toCore(line().accessibleName()));
  EXPECT_EQ("&Row 1, P&&L", toCore(child<QLabel>("lblEditCell").text()));
}

// --- Failures -------------------------------------------------------------------------------------------------------

TEST_F(ImExFileEditLine, keyDownThatFailsIsShown) {
  host.trace->onTrace = [count = 0]() mutable {
    if (++count == 2)
      throw RuntimeError(57, "Log", "Device I/O error");
  };
  press(Qt::Key_Home);
  host.trace->onTrace = [] {};
  EXPECT_EQ((Texts{"> editor txtChangeField_KeyDown(KeyCode = 36, Shift = 0)",
                   "! ImExActionCtrl txtChangeField_KeyDown 57 Log: Device I/O error",
                   "* box [48] Error Number: 57 - Device I/O error: " + kKeyDownFailed}),
            happened());
}

TEST_F(ImExFileEditLine, otherFailuresHaveTheUsualText) {
  const std::string usual =
      "* box [48] Error Number: 57 - Device I/O error: The requested operation could not be completed.";
  host.trace->onTrace = [] { throw RuntimeError(57, "Log", "Device I/O error"); };
  release(Qt::Key_X);
  EXPECT_EQ((Texts{"! ImExActionCtrl txtChangeField_KeyUp 57 Log: Device I/O error", usual}), happened());
  cancel().setFocus();
  QTest::keyPress(&cancel(), Qt::Key_X);
  EXPECT_EQ((Texts{"! ImExActionCtrl cmdCancel_KeyDown 57 Log: Device I/O error", usual}), happened());
  host.trace->onTrace = [] {};
}

} // namespace

} // namespace imex::test
