#pragma once

#include "controls/ImExFileEdit/ImExFileEdit.h"
#include "platform/qt/QtGrid.h"
#include "platform/qt/QtKeyboard.h"
#include "support/FakeUi.h"
#include "support/QtTest.h"
#include "support/raised.h"
#include "support/texts.h"

#include <QApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace imex::test {

using host::GridCell;

/// A list of messages about rows: {{1, "text"}, {3, "text"}}.
ErrorBeansPtr messages(const std::vector<std::pair<int, std::string>>& rows);

/// A list of lines of fields.
RowsPtr records(const std::vector<Texts>& lines);

/// Joins lists of lines.
Texts operator+(Texts a, const Texts& b);

/// An editor named "editor" among the fakes, with a keyboard, in a window that is active. Its signals go into the same
/// journal as traces and boxes: "* saving", "* saved", "* cancel".
class EditorTest : public testing::Test {
 protected:
  EditorTest();

  /// What has happened since the last call, in order and whole.
  Texts everything() { return std::exchange(host.trace->lines, {}); }

  /// The same without the lines of modules and records, and without the resizing of a window.
  Texts happened();

  /// The lines of the editor's procedure of this label that does nothing else: traced("reset()").
  static Texts traced(const std::string& label) { return {"> editor " + label, "< editor " + label}; }

  template <class Widget>
  Widget& child(const char* name) {
    Widget* widget = editor.findChild<Widget*>(QLatin1String(name));
    if (widget == nullptr)
      throw RuntimeError(ErrorNumber::objectVariableNotSet, name);
    return *widget;
  }
  platform::QtGrid& view() { return child<platform::QtGrid>("MSFlexGrid1"); }
  host::Grid& cells() { return view().cells(); }
  QLineEdit& line() { return child<QLineEdit>("txtChangeField"); }
  QPushButton& save() { return child<QPushButton>("cmdOK"); }
  QPushButton& cancel() { return child<QPushButton>("cmdCancel"); }

  std::string cell(int row, int column) { return std::string(cells().text({row, column})); }
  Texts row(int number);
  std::string lineText() { return toCore(line().text()); }
  std::string focus();
  host::GridLayout& layout() { return cells().layout(); }

  /// How the grid aligns the cells of a column of fields.
  Qt::Alignment alignment(int column) {
    return view().model()->index(0, column - 1).data(Qt::TextAlignmentRole).value<Qt::Alignment>();
  }

  /// Writes the file "import.txt" and sets the properties for it. `fields` titles are named "Title 1", "Title 2" ...
  std::string giveFile(const std::string& bytes, int rows, int fields, char delimiter = '|');

  /// Gives a file of these lines, loads it and resets the editor.
  void open(const Texts& lines, int fields, char delimiter = '|');

  /// The bytes of the file.
  std::string fileBytes() const { return host.folder.read("import.txt"); }

  /// A key pressed and released in the grid or in the edit line, which has the focus.
  void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
  void typeText(const char* text);

  /// Presses the mouse in the grid's row-number column, in the middle of a row.
  void pressRowNumber(int row) { pressCell(row, 0); }

  /// Presses a cell with the mouse.
  void pressCell(int row, int column);
  void doubleClickCell(int row, int column);

  /// What lies there in the grid, with the point in its own pixels.
  std::pair<QWidget*, QPoint> partAt(int row, int column);

  void click(QAbstractButton& button) { QTest::mouseClick(&button, Qt::LeftButton); }

  /// A file system that fails at a call: failAt("openForOutput", 70).
  void failAt(const std::string& call, ErrorNumber number);

  TestHost host;
  FakeUi ui{host};
  platform::QtKeyboard keyboard;
  QWidget window;
  ImExFileEdit& editor;

  /// Runs in every signal, after it was noted; may throw what the host's handler fails with.
  std::function<void()> onSignal = [] {};
  bool isSavingAllowed = true;

 private:
  void note(const std::string& signal);
};

} // namespace imex::test
