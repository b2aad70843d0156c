#include "EditorTest.h"

namespace imex::test {

namespace {

const std::string kKeyDownFailed = "An error has occurred while processing the key down event within the row view.";
const std::string kKeyPressFailed = "An error has occurred while processing the key press event within the row view.";

Texts keyDown(int code, int shift) {
  const std::string label =
      "MSFlexGrid1_KeyDown(KeyCode = " + std::to_string(code) + ", Shift = " + std::to_string(shift) + ")";
  return {"> editor " + label, "< editor " + label};
}

Texts keyPress(int ascii) {
  const std::string label = "MSFlexGrid1_KeyPress(KeyAscii = " + std::to_string(ascii) + ")";
  return {"> editor " + label, "< editor " + label};
}

class ImExFileEditKeys : public EditorTest {
 protected:
  ImExFileEditKeys() { open({"a|b|c", "d|e|f", "g|h|i"}, 3); }
};

// --- Typing ---------------------------------------------------------------------------------------------------------

TEST_F(ImExFileEditKeys, lettersAreAppendedToTheCell) {
  typeText("xY1 ~");
  EXPECT_EQ("axY1 ~", cell(1, 1));
  EXPECT_EQ("axY1 ~", lineText());
  EXPECT_TRUE(editor.isModified());
}

TEST_F(ImExFileEditKeys, everyPrintableCodeButTheBarIsTyped) {
  std::string typed;
  cells().setText({1, 1}, "");
  for (char c = 32; c < 127; ++c) {
    const QString text(1, QLatin1Char(c));
    QKeyEvent event(QEvent::KeyPress, Qt::Key_unknown, Qt::NoModifier, text);
    QApplication::sendEvent(&view(), &event);
    if (c != '|')
      typed += c;
  }
  EXPECT_EQ(typed, cell(1, 1));
}

TEST_F(ImExFileEditKeys, barIsIgnoredWhateverTheDelimiter) {
  for (const int delimiter : {124, 9}) {
    editor.DelimiterAscii(delimiter);
    everything();
    key(Qt::Key_Bar);
    EXPECT_EQ(keyDown(220, 1) + keyPress(124), happened());
    EXPECT_EQ("a", cell(1, 1));
    EXPECT_EQ("", lineText()) << "the line is not loaded either";
  }
  EXPECT_TRUE(editor.isModified());
}

TEST_F(ImExFileEditKeys, charactersBeyond126AreIgnored) {
  QKeyEvent event(QEvent::KeyPress, Qt::Key_Eacute, Qt::NoModifier, QStringLiteral("é"));
  QApplication::sendEvent(&view(), &event);
  EXPECT_EQ(keyDown(0, 0) + keyPress(233), happened());
  EXPECT_EQ("a", cell(1, 1));
  EXPECT_TRUE(editor.isModified());
}

TEST_F(ImExFileEditKeys, letterTracesBothHandlers) {
  key(Qt::Key_X);
  EXPECT_EQ(keyDown('X', 0) + keyPress('x'), happened());
}

TEST_F(ImExFileEditKeys, backspaceTakesTheLastCharacter) {
  cells().setText({1, 1}, "Zoë");
  key(Qt::Key_Backspace);
  EXPECT_EQ(keyDown(8, 0) + keyPress(8), happened());
  EXPECT_EQ("Zo", cell(1, 1));
  EXPECT_EQ("Zo", lineText());
  key(Qt::Key_Backspace);
  key(Qt::Key_Backspace);
  key(Qt::Key_Backspace);
  EXPECT_EQ("", cell(1, 1)) << "an empty cell stays empty";
}

TEST_F(ImExFileEditKeys, escapeSetsTheFlagAlone) {
  key(Qt::Key_Escape);
  EXPECT_EQ(keyDown(27, 0) + keyPress(27), happened());
  EXPECT_TRUE(editor.isModified());
  EXPECT_EQ("a", cell(1, 1));
}

TEST_F(ImExFileEditKeys, arrowsTypeNothing) {
  key(Qt::Key_Right);
  EXPECT_FALSE(editor.isModified());
  EXPECT_EQ((GridCell{1, 2}), cells().current());
}

TEST_F(ImExFileEditKeys, typingAtTheTitlesOfAnEmptyGridDoesNothing) {
  open({}, 2);
  typeText("x");
  key(Qt::Key_Backspace);
  key(Qt::Key_Delete);
  key(Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ((Texts{"", "Title 1", "Title 2"}), row(0));
  EXPECT_TRUE(host.messageBox.boxes.empty());
}

// --- Clip text ------------------------------------------------------------------------------------------------------

TEST_F(ImExFileEditKeys, copyAndPaste) {
  key(Qt::Key_C, Qt::ControlModifier);
  key(Qt::Key_Right);
  key(Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ((Texts{"1", "a", "a", "c"}), row(1));
  EXPECT_EQ("a", lineText()) << "the edit line shows what was pasted";
  EXPECT_EQ("left by another program", ui.clipboard.text) << "the clip text is the editor's own";
}

TEST_F(ImExFileEditKeys, copyTracesItsCodes) {
  QTest::keyEvent(QTest::Press, &view(), Qt::Key_C, Qt::ControlModifier);
  const Texts lines = happened();
  const Texts last(lines.end() - 4, lines.end());
  EXPECT_EQ(keyDown('C', 2) + keyPress(3), last);
}

TEST_F(ImExFileEditKeys, cutEmptiesTheEditCell) {
  key(Qt::Key_Right);
  key(Qt::Key_X, Qt::ControlModifier);
  EXPECT_EQ((Texts{"1", "a", "", "c"}), row(1));
  EXPECT_EQ("", lineText());
  key(Qt::Key_Down);
  key(Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ((Texts{"2", "d", "b", "f"}), row(2));
}

TEST_F(ImExFileEditKeys, pasteOfNothingEmptiesTheCell) {
  key(Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ("", cell(1, 1));
}

TEST_F(ImExFileEditKeys, ctrlMeansCtrlAlone) {
  key(Qt::Key_X, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ("a", cell(1, 1));
}

// --- Delete ---------------------------------------------------------------------------------------------------------

TEST_F(ImExFileEditKeys, deleteEmptiesTheEditCell) {
  key(Qt::Key_Right);
  everything();
  key(Qt::Key_Delete);
  EXPECT_EQ(keyDown(46, 0), happened()) << "no character comes with it";
  EXPECT_EQ((Texts{"1", "a", "", "c"}), row(1));
  EXPECT_EQ("", lineText());
}

TEST_F(ImExFileEditKeys, deleteRemovesTheSelectedRow) {
  pressRowNumber(2);
  key(Qt::Key_Delete);
  EXPECT_EQ((host::GridSize{3, 4}), cells().size());
  EXPECT_EQ((Texts{"1", "a", "b", "c"}), row(1));
  EXPECT_EQ((Texts{"3", "g", "h", "i"}), row(2)) << "numbers stay";
  EXPECT_TRUE(editor.isModified());
  key(Qt::Key_Delete);
  EXPECT_EQ((host::GridSize{2, 4}), cells().size()) << "the row below is selected now";
}

TEST_F(ImExFileEditKeys, rowStaysSelectedUntilTheNextPress) {
  pressRowNumber(2);
  key(Qt::Key_Down);
  key(Qt::Key_Delete);
  EXPECT_EQ(3, cells().size().rows);
  EXPECT_EQ((Texts{"2", "d", "e", "f"}), row(2)) << "the row of the edit cell goes, not the one that was pressed";
  EXPECT_TRUE(editor.isModified());
}

TEST_F(ImExFileEditKeys, deleteOfTheLastRowSelectsTheOneBefore) {
  pressRowNumber(3);
  key(Qt::Key_Delete);
  EXPECT_EQ(2, cells().current().row);
  key(Qt::Key_Delete);
  EXPECT_EQ((Texts{"1", "a", "b", "c"}), row(1));
  EXPECT_EQ(2, cells().size().rows);
}

TEST_F(ImExFileEditKeys, deleteOfTheFirstRowLeavesTheFlag) {
  pressRowNumber(1);
  key(Qt::Key_Delete);
  EXPECT_EQ((Texts{"2", "d", "e", "f"}), row(1));
  EXPECT_EQ(3, cells().size().rows);
  EXPECT_FALSE(editor.isModified());
}

TEST_F(ImExFileEditKeys, deleteOfTheOnlyRowEmptiesIt) {
  open({"a|b"}, 2);
  pressRowNumber(1);
  key(Qt::Key_Delete);
  EXPECT_EQ((Texts{"", "", ""}), row(1));
  EXPECT_EQ(2, cells().size().rows);
  EXPECT_FALSE(editor.isModified());
}

TEST_F(ImExFileEditKeys, pressInACellTakesTheSelectionOfTheRowBack) {
  pressRowNumber(2);
  pressCell(3, 2);
  key(Qt::Key_Delete);
  EXPECT_EQ((Texts{"3", "g", "", "i"}), row(3));
}

TEST_F(ImExFileEditKeys, removedRowDoesNotComeBackThroughTheEditLine) {
  pressRowNumber(2);
  key(Qt::Key_Delete);
  line().setFocus();
  key(Qt::Key_Return);
  EXPECT_EQ((Texts{"3", "g", "h", "i"}), row(2));
}

TEST_F(ImExFileEditKeys, loadTakesTheSelectionOfTheRowBack) {
  pressRowNumber(2);
  open({"a|b", "c|d"}, 2);
  key(Qt::Key_Delete);
  EXPECT_EQ((Texts{"1", "", "b"}), row(1));
}

// --- Failures -------------------------------------------------------------------------------------------------------

TEST_F(ImExFileEditKeys, keyDownThatFailsIsShown) {
  host.services.keyboard = nullptr;
  host.install();
  key(Qt::Key_Return);
  const Texts lines = happened();
  EXPECT_EQ((Texts{"> editor MSFlexGrid1_KeyDown(KeyCode = 13, Shift = 0)",
                   "! ImExActionCtrl MSFlexGrid1_KeyDown 429 ImEx: Component can't create object",
                   "* box [48] Error Number: 429 - Component can't create object: " + kKeyDownFailed}) +
                keyPress(13),
            lines);
}

TEST_F(ImExFileEditKeys, keyPressThatFailsIsShown) {
  host.trace->onTrace = [&] {
    host.trace->onTrace = [count = 0]() mutable {
      if (++count == 2)
        throw RuntimeError(57, "Log", "Device I/O error");
    };
  };
  key(Qt::Key_X);
  host.trace->onTrace = [] {};
  const Texts lines = happened();
  EXPECT_EQ("! ImExActionCtrl MSFlexGrid1_KeyPress 57 Log: Device I/O error", lines.at(lines.size() - 2));
  EXPECT_EQ("* box [48] Error Number: 57 - Device I/O error: " + kKeyPressFailed, lines.back());
}

} // namespace

} // namespace imex::test
