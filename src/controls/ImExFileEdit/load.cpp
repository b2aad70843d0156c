#include "controls/ImExFileEdit/ErrorCursor.h"
#include "controls/ImExFileEdit/FieldReader.h"
#include "controls/ImExFileEdit/ImExFileEdit.h"
#include "controls/ImExFileEdit/namedFile.h"
#include "host/MessageBox.h"
#include "host/Services.h"
#include "module/ImExModule.h"
#include "request/shared.h"
#include "runtime/text.h"
#include "ui_ImExFileEdit.h"

#include <algorithm>
#include <string>
#include <vector>

namespace imex {

namespace {

constexpr int kNumberColumnWidth = 400; // twips
constexpr int kMessageHeight = 10;      // twips that a message takes above a line's height
constexpr host::GridCell kFirstCell{1, 1};
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
    namingFile(m_fileName, [&] { readFile(); });
    grid().layout().setAllRowHeights(grid().layout().rowHeight(0));
    sizeColumns();
    showFirstRecord();
  });
}

/// Error 9 at a record beyond the grid, whose number has no cell.
void ImExFileEdit::readFile() {
  const std::string delimiter = character(m_delimiterAscii);
  ImExModule::InputFile file(m_fileName);
  std::string_view record;
  std::vector<std::string_view> texts; // of one row, in memory that is used again
  for (int row = 1; file.readLine(record); ++row) {
    const std::string number = std::to_string(row);
    texts.assign(1, number);
    readRecord(record, delimiter, texts);
    showTexts(row, texts);
  }
  m_encoding = file.encoding();
}

void ImExFileEdit::readRecord(std::string_view record, std::string_view delimiter,
                              std::vector<std::string_view>& texts) {
  const auto columns = static_cast<std::size_t>(grid().size().columns);
  const std::size_t before = texts.size();
  FieldReader fields(record, delimiter);
  std::string_view field;
  while (texts.size() <= columns && fields.next(field)) // one too many tells that there are more
    texts.push_back(field);
  if (texts.size() == before) // not even an empty record is without a field; the check stays as it is
    tellOfSkippedRecord();
}

/// What is beyond the last column is left out, which is a change.
void ImExFileEdit::showTexts(int row, std::span<const std::string_view> texts) {
  host::Grid& cells = grid();
  const auto columns = static_cast<std::size_t>(cells.size().columns);
  cells.setTexts({row, 0}, texts.first(std::min(texts.size(), columns)));
  m_isModified = m_isModified || texts.size() > columns;
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
