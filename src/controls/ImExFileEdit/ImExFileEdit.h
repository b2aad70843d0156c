#pragma once

#include "controls/common/procedures.h"
#include "host/Grid.h"
#include "request/ImExRequest.h"
#include "runtime/Collection.h"
#include "runtime/Integer.h"
#include "runtime/encoding.h"
#include "runtime/export.h"

#include <QString>
#include <QWidget>

#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

class QKeyEvent;
class QLabel;
class QPoint;

namespace imex {

namespace Ui {
class ImExFileEdit;
}

/// The editor of an import file: a grid of its records and fields with an edit line above it, which writes the grid
/// back over the file. It has two views, the file itself and the file's lines beside the messages about them.
///
/// A host sets the properties, calls one of the three load operations and then reset(). From there on the user works
/// until one of the signals tells the host of the end:
///
///     editor.fileName(path);
///     editor.NumberRows(lineCount);
///     editor.NumberColumns(columnCount);
///     editor.HeaderCollection(titles);
///     editor.DelimiterAscii(9);
///     editor.loadGrid();
///     editor.reset();
///
/// Files. A record is a line ended by CR LF; lines are at most NumberRows. A file is written back in the encoding and
/// with the mark that it was read with (only where it would then be read as other texts, as UTF-8 with the mark), so a
/// file of NumberColumns fields in every line is the same bytes after it was
/// loaded and saved, provided that its last line has an end too. Fields beyond NumberColumns are dropped, short lines
/// come back with all their delimiters, and lines without any text are left out. Nothing is quoted: a field that holds
/// the delimiter or a line break is more than one field when the file is next read. The errors view reads no file; it
/// takes the encoding of the file that stands at that path when it is loaded, and loadGridHeader(), for a new file,
/// UTF-8. Saving replaces the file's contents where it is; what fails in the middle leaves a file that ends there, and
/// the grid as it was.
///
/// Keyboard. Tab and Enter in the grid go to the next cell, with Shift to the one before, and stay in the grid. The
/// edit line, Save and Cancel are reached by Alt with the marked letter. Tab leads from the edit line to the grid and
/// from Cancel to the edit line, Shift+Tab from the edit line to Cancel, from there to Save and on to the grid.
///
/// Errors. A member that the host calls records its error and raises it again, with number, source and description; the
/// description of one that a file caused ends in the file's path. A load that fails takes Save away until one succeeds,
/// because the grid then holds a part of the file only. A handler of keys, mouse or buttons records its error and shows
/// a box. What was set before an error stays set.
///
/// Names. Child widgets have the names of the control's parts: "MSFlexGrid1", "txtChangeField", "cmdOK", "cmdCancel".
/// The source of trace lines is the control's own objectName().
class IMEX_EXPORT ImExFileEdit : public QWidget {
  Q_OBJECT

 public:
  /// An editor of no file: it is of use after a load.
  explicit ImExFileEdit(QWidget* parent = nullptr);
  ~ImExFileEdit() override;

  // --- Properties ---------------------------------------------------------------------------------------------------
  // They say what the next load does. Afterwards fileName is where Save writes, and DelimiterAscii what with.

  /// The titles of the columns, in field order. The list itself is kept, not a copy. Null at first: a load then fails
  /// with error 91. Titles that are more than the columns are ignored.
  StringsPtr HeaderCollection() const;
  void HeaderCollection(const StringsPtr& value);

  /// Fields of a record, without the column of the row numbers. In the errors view the messages are the last of them.
  Integer NumberColumns() const;
  void NumberColumns(Integer value);

  /// The code of the character between two fields, 9 or 124. 0 at first.
  Integer DelimiterAscii() const;
  void DelimiterAscii(Integer value);

  /// Records of the file.
  Integer NumberRows() const;
  void NumberRows(Integer value);

  /// The path of the file, with either separator.
  QString fileName() const;
  void fileName(const QString& value);

  // --- Operations ---------------------------------------------------------------------------------------------------

  /// Makes every record row as high as the header row.
  void resizeRows();

  /// Lays out an empty grid of NumberRows and NumberColumns with its titles, for a file that does not exist yet. Rows
  /// keep their heights; resizeRows() makes them alike.
  void loadGridHeader();

  /// Shows the file. Error 9 where it has more than NumberRows lines, as a file that grew since they were counted; the
  /// lines before are shown. Columns become as wide as their widest text, and are never made narrower.
  void loadGrid();

  /// Shows lines and the messages about them, which are to be sorted by row. The arguments go into the properties. A
  /// record with fewer than `columnCount` - 1 fields leaves the rest empty, surplus fields are left out, and so are
  /// messages about rows that are not there. Error 9 where there are fewer than `rowCount` records, error 91 for a list
  /// that is null.
  void loadGridWithErrors(const QString& fileName, const RowsPtr& records, const ErrorBeansPtr& errors,
                          Integer rowCount, Integer columnCount, const StringsPtr& headers, Integer delimiterAscii);

  /// The width in twips that a text needs in a cell, its widest line where it has several. Error 6 past 32,767.
  Integer strToTwip(const QString& text) const;

  /// Goes to the first record's first field, with the keyboard too, and empties the edit line. The edit line is loaded
  /// from the second cell on that the user then enters.
  void reset();

  /// Whether a load dropped fields, or the errors view was loaded, or the user pressed a key that may have changed
  /// something or deleted a row other than the first. It is never taken back.
  bool isModified() const { return m_isModified; }

  /// The size of its layout, and the smallest in which its parts have room.
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 Q_SIGNALS:
  /// The user gives up. Nothing was written.
  void cancel();

  /// The file was written and closed. An error of a handler is shown as one of the saving.
  void saved();

  /// The file is about to be written. A handler that sets `isAllowed` to false keeps it from that, and tells the user
  /// why or has asked: for a host that finds the file changed by another program since it was loaded. Connect directly.
  void saving(bool& isAllowed);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  // Construction
  void addCellLabel();
  void connectGrid();
  void connectParts();

  // Loading
  void layOut();
  void populateHeaderRow();
  void showFirstRecord();
  void readFile(std::string_view delimiter);
  void showErrorRows(const RowsPtr& records, const ErrorBeansPtr& errors);
  void showRecord(int row, const RowsPtr& records);
  template <class Load>
  void load(std::string_view name, Load&& body);

  // Widths
  int columnWidthFor(std::string_view text) const;
  void sizeColumns();

  // Saving
  void cmdOK_Click();
  bool hasNothingToSave() const;
  int savedFields() const;
  Encoding encodingToSave() const;
  void writeFile(Encoding encoding) const;

  // The grid
  void gridKeyPressed(QKeyEvent& event);
  void gridMousePressed(QPoint point, Qt::MouseButton button, Qt::KeyboardModifiers modifiers);
  void gridFocusChanged(bool hasFocus);
  void MSFlexGrid1_KeyDown(int keyCode, int shift);
  void MSFlexGrid1_KeyPress(int keyAscii);
  void MSFlexGrid1_MouseDown(int button, int shift, double xTwips, double yTwips);
  void MSFlexGrid1_DblClick();
  void MSFlexGrid1_EnterCell();
  void MSFlexGrid1_LeaveCell();
  void ctrlKey(int keyCode);
  void deleteKey();
  void deleteSelectedRow();
  void type(int keyAscii);
  void checkTab();
  void selectRowAt(double yTwips);

  // Moves
  void moveToNextCell();
  void moveForward();
  void moveBack();
  void moveByCode(host::GridCell cell);
  void enterCurrentCell();

  // The edit line
  bool filterLine(QEvent* event);
  bool lineKeyPressed(const QKeyEvent& event);
  void lineKeyReleased(const QKeyEvent& event);
  void lineEdited();
  void txtChangeField_KeyDown(int keyCode, int shift);
  bool txtChangeField_KeyPress(int keyAscii);
  void txtChangeField_KeyUp();
  void rememberLine();
  void undoBar();
  void editCellTakesLine();
  void bindTo(host::GridCell cell);
  void bindLineTo(host::GridCell cell);
  void refreshLine();
  void setLine(std::string_view text);
  QString editCellName() const;
  void nameEditCell();
  void placeCellLabel();

  // Cancel
  void cmdCancel_Click();
  bool cancelKeyPressed(const QKeyEvent& event);
  void cmdCancel_KeyDown(bool isTab);

  void UserControl_Resize();

  host::Grid& grid() const;
  host::GridCell editCell() const { return {m_editRow, m_editColumn}; }
  bool hasEditCell() const;
  bool isErrorColumn(int column) const;

  // The shapes of the control's procedures.

  /// One that the host calls, and one that such a procedure calls.
  template <class Body>
  std::invoke_result_t<Body> hostCalled(std::string_view name, Body&& body) const {
    return tracedIn(*this, labels(name), std::forward<Body>(body), Reraise{});
  }

  /// One that an event calls.
  template <class Body>
  void handler(std::string_view name, std::string_view prompt, Body&& body) {
    tracedIn(*this, labels(name), std::forward<Body>(body), ShowBox{std::string(prompt)});
  }

  /// The same, with its arguments in the trace lines.
  template <class MakeText, class Body>
  void handlerWithArguments(std::string_view name, MakeText&& makeText, std::string_view prompt, Body&& body) {
    const std::string source = toCore(objectName());
    const Procedure procedure{source, name, {}, kControlErrorSource};
    guarded(
        procedure, [&] { betweenTraces(procedure, makeText, std::forward<Body>(body)); }, ShowBox{std::string(prompt)});
  }

  static Labels labels(std::string_view name) { return {.name = name, .errorSource = kControlErrorSource}; }

  std::unique_ptr<Ui::ImExFileEdit> m_ui;
  QLabel* m_cellLabel = nullptr; ///< which cell the edit line is bound to, inside the line

  // Properties
  StringsPtr m_headerCollection;
  Integer m_numberColumns;
  Integer m_numberRows;
  Integer m_delimiterAscii;
  std::string m_fileName;

  Encoding m_encoding = Encoding::utf8; ///< of the file
  Integer m_editRow = 1;                ///< the cell that the edit line is bound to
  Integer m_editColumn = 1;
  bool m_isModified = false;
  bool m_isEditing = false;     ///< the user has entered a cell
  bool m_isErrorsView = false;  ///< the last column has the messages
  bool m_isRowSelected = false; ///< the mouse was pressed on the row numbers last
  int m_selectedRow = 0;        ///< the row of that press; kept, and read by nothing yet
  std::string m_clipText;
  bool m_isTabDue = false; ///< the grid lost the focus while Tab was held

  QString m_lineText;       ///< the edit line's text when it was loaded or its cell took it last
  QString m_rememberedText; ///< the edit line's text before the keystroke of a vertical bar
  bool m_isBarTyped = false;
  bool m_isLineKeyDown = false; ///< the release of a key is to come, which hands the line's text on
};

} // namespace imex
