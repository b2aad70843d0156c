#include "controls/ImExFileEdit/ErrorCursor.h"
#include "controls/ImExFileEdit/ImExFileEdit.h"
#include "controls/ImExFileEdit/RecordRows.h"
#include "controls/ImExFileEdit/editorLayout.h"
#include "controls/ImExFileEdit/namedFile.h"
#include "host/MessageBox.h"
#include "host/Services.h"
#include "module/ImExModule.h"
#include "request/shared.h"
#include "runtime/text.h"
#include "ui_ImExFileEdit.h"

#include <algorithm>
#include <string>

namespace imex {

namespace {

constexpr int kNumberColumnWidth = 400; // twips
constexpr int kMessageHeight = 10;      // twips that a message takes above a line's height
constexpr int kNoColumn = -1;
constexpr std::string_view kNoDelimiters = "A record within your import file contains no delimiters.";
constexpr std::string_view kSkipped = "The record has been skipped.";

template <class T>
const T& required(const std::shared_ptr<T>& object) {
  if (!object)
    throw RuntimeError(ErrorNumber::objectVariableNotSet, "ImExFileEdit");
  return *object;
}

void tellOfSkippedRecord() {
  const std::string prompt = std::string(kNoDelimiters) + std::string(kLineBreak) + std::string(kSkipped);
  host::required(host::services().messageBox).show(prompt, host::kInformationStyle, kMaintenanceTitle);
}

/// The encoding of a file that is not read otherwise; plain UTF-8 for one that cannot be read.
Encoding encodingOnDisk(const std::string& path) {
  try {
    return ImExModule::InputFile(path).encoding();
  } catch (const std::exception&) {
    return Encoding::utf8;
  }
}

} // namespace

/// The shape of a load: Save is there for a grid that is complete.
template <class Load>
void ImExFileEdit::load(std::string_view name, Load&& body) {
  hostCalled(name, [&] {
    m_ui->cmdOK->setEnabled(false);
    body();
    m_ui->cmdOK->setEnabled(true);
    nameEditCell();
  });
}

// --- Layout ---------------------------------------------------------------------------------------------------------

void ImExFileEdit::layOut() {
  host::Grid& cells = grid();
  cells.clear();
  m_encoding = Encoding::utf8;
  m_isErrorsView = false;
  m_isRowSelected = false;
  m_editRow = kFirstCell.row;
  m_editColumn = kFirstCell.column;
  cells.setSize({int{m_numberRows} + 1, int{m_numberColumns} + 1});
  cells.layout().setColumnWidth(0, kNumberColumnWidth);
  cells.layout().setTextWrap(false);
  m_ui->MSFlexGrid1->setMessageColumn(kNoColumn);
  populateHeaderRow();
}

void ImExFileEdit::populateHeaderRow() {
  hostCalled("populateHeaderRow", [&] {
    const Strings& titles = required(m_headerCollection);
    host::Grid& cells = grid();
    const int last = std::min(static_cast<int>(titles.count()), cells.size().columns - 1);
    for (int column = 1; column <= last; ++column) {
      const std::string& title = titles.item(column);
      cells.setText({0, column}, title);
      cells.layout().setColumnWidth(column, columnWidthFor(title));
    }
  });
}

void ImExFileEdit::showFirstRecord() {
  if (hasEditCell()) // which is the first one after a load
    grid().layout().showFirst(kFirstCell);
}

void ImExFileEdit::loadGridHeader() {
  load("loadGridHeader", [&] { layOut(); });
}

// --- The file -------------------------------------------------------------------------------------------------------

void ImExFileEdit::loadGrid() {
  load("loadGrid", [&] {
    layOut();
    const std::string delimiter = character(m_delimiterAscii);
    namingFile(m_fileName, [&] { readFile(delimiter); });
    grid().layout().setAllRowHeights(grid().layout().rowHeight(0));
    sizeColumns();
    showFirstRecord();
  });
}

/// Error 9 at a record beyond the grid, whose number has no cell.
void ImExFileEdit::readFile(std::string_view delimiter) {
  ImExModule::InputFile file(m_fileName);
  RecordRows rows(grid(), delimiter);
  std::string_view record;
  while (file.readLine(record)) {
    const RecordRows::Fit fit = rows.show(record);
    if (fit == RecordRows::Fit::nothing) // not even an empty record is without a field; the check stays as it is
      tellOfSkippedRecord();
    m_isModified = m_isModified || fit == RecordRows::Fit::cut; // what is left out is a change
  }
  m_encoding = file.encoding();
}

// --- The lines with their messages ----------------------------------------------------------------------------------

void ImExFileEdit::loadGridWithErrors(const QString& fileName, const RowsPtr& records, const ErrorBeansPtr& errors,
                                      Integer rowCount, Integer columnCount, const StringsPtr& headers,
                                      Integer delimiterAscii) {
  load("loadGridWithErrors", [&] {
    m_isModified = true;
    m_fileName = toCore(fileName);
    m_numberColumns = columnCount;
    m_numberRows = rowCount;
    m_delimiterAscii = delimiterAscii;
    m_headerCollection = headers;
    layOut();
    m_isErrorsView = true;
    m_ui->MSFlexGrid1->setMessageColumn(m_numberColumns > 0 ? int{m_numberColumns} : kNoColumn);
    m_encoding = encodingOnDisk(m_fileName);
    showErrorRows(records, errors);
    sizeColumns();
    showFirstRecord();
  });
}

/// The column of the messages is the last one; where there is no other, it is that of the row numbers.
void ImExFileEdit::showErrorRows(const RowsPtr& records, const ErrorBeansPtr& errors) {
  host::Grid& cells = grid();
  host::GridLayout& layout = cells.layout();
  const int lineHeight = layout.rowHeight(0);
  const int errorColumn = m_numberColumns;
  ErrorCursor cursor(errors);
  int widest = 0;
  for (int row = 1; row <= m_numberRows; ++row) {
    showRecord(row, records);
    int height = 2 * lineHeight;
    std::string texts;
    while (const auto error = cursor.next(row)) {
      const std::string text = *error + std::string(kLineBreak);
      texts += text;
      height += lineHeight + kMessageHeight;
      if (const int width = columnWidthFor(text); width > widest)
        layout.setColumnWidth(errorColumn, widest = width);
    }
    if (!texts.empty())
      layout.setTextWrap(true);
    layout.setRowHeight(row, height);
    cells.setText({row, errorColumn}, texts);
  }
}

void ImExFileEdit::showRecord(int row, const RowsPtr& records) {
  host::Grid& cells = grid();
  cells.setText({row, 0}, std::to_string(row));
  const Strings& fields = required(required(records).item(row));
  const int last = std::min(static_cast<int>(fields.count()), int{m_numberColumns} - 1);
  for (int column = 1; column <= last; ++column)
    cells.setText({row, column}, fields.item(column));
}

} // namespace imex
