#include "request/ImExRequest.h"

#include "module/ImExModule.h"
#include "module/tracing.h"
#include "request/lineItemColumns.h"
#include "request/shared.h"
#include "runtime/text.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <span>
#include <utility>

namespace imex {

namespace {

constexpr std::string_view kSource = "ImExRequest";
constexpr int kFileNumber = 1;
constexpr int kGreatestLineCount = 500;
constexpr std::string_view kErrorsColumn = "Errors";
constexpr std::string_view kLimitTitle = "Corvana";

/// What the three procedures differ in, besides their record.
struct Variant {
  std::string_view procedure;
  std::string_view items; ///< what a line holds, in the message about too many lines
  std::size_t columnCount;
};

constexpr Variant kProject{"serializeProjectLineItemFile", "project line items", 10};
constexpr Variant kQuote{"serializeQuoteLineItemFile", "quote line items", 10};
constexpr Variant kOrder{"serializeOrderLineItemFile", "order line items", 6};

std::string formatKey(ImExRequest& request) {
  return request.DataType() + request.DataOrigin();
}

/// One run over a line item file.
class LineItemFile {
 public:
  /// Makes the record of one line and keeps it.
  using MakeRecord = std::function<LineItemRecord&()>;

  LineItemFile(ImExRequest& request, const Variant& variant)
      : m_request(request), m_variant(variant), m_fileName(request.CheckedFileName()) {}

  /// Reads the file to its end and closes it. A file that is not there and a badly delimited line end it early.
  void read(const MakeRecord& makeRecord);

  bool hasTooManyLines() const { return m_lineNumber > kGreatestLineCount; }
  void reportTooManyLines();

  bool hasErrors() const { return !m_errors->isEmpty(); }
  void showErrors();

 private:
  void readLine(std::string_view line, const MakeRecord& makeRecord);
  void checkFields(const Strings& fields, LineItemRecord& record);
  void addError(std::string text);

  ImExRequest& m_request;
  const Variant& m_variant;
  std::string m_fileName;
  RowsPtr m_rows = std::make_shared<Collection<StringsPtr>>();
  ErrorBeansPtr m_errors = std::make_shared<Collection<std::shared_ptr<ImportExportErrorBean>>>();
  Integer m_lineNumber; ///< of the lines that were not skipped
};

void LineItemFile::read(const MakeRecord& makeRecord) {
  if (!ImExModule::checkFileExists(m_fileName)) {
    showNotice(kCannotOpenFile);
    throw LeaveEarly();
  }
  ImExModule::InputFile file(m_fileName, kFileNumber);
  std::string_view line;
  while (file.readLine(line))
    readLine(line, makeRecord);
}

/// A line of no more characters than the format has columns is skipped, which takes in a line of delimiters alone.
void LineItemFile::readLine(std::string_view line, const MakeRecord& makeRecord) {
  const Integer columnCount = ImExModule::getFormatColumnCount(formatKey(m_request));
  if (std::cmp_less_equal(length(line), int{columnCount}))
    return;
  ++m_lineNumber;
  LineItemRecord& record = makeRecord();
  const StringsPtr fields = ImExModule::Parse(line, m_request.DelimiterAscii());
  if (!std::cmp_equal(fields->count(), int{columnCount})) {
    showNotice(" The import file is not properly delimited." + std::string(kLineBreak) +
               " The import has been halted.");
    throw LeaveEarly();
  }
  checkFields(*fields, record);
  m_rows->add(fields);
}

/// A format of fewer columns than the record has leaves some without a field, which is error 9.
void LineItemFile::checkFields(const Strings& fields, LineItemRecord& record) {
  for (const LineItemColumn& column : lineItemColumns().first(m_variant.columnCount)) {
    const std::string& value = fields.item(column.position);
    std::string message = column.judge(column.label, value);
    if (message.empty())
      (record.*column.store)(value);
    else
      addError(std::move(message));
  }
}

void LineItemFile::addError(std::string text) {
  addErrorRow(*m_errors, m_lineNumber, std::move(text));
}

void LineItemFile::reportTooManyLines() {
  const std::string count = toText(m_lineNumber);
  // "mulitple" is part of the text.
  showNotice("The maximum number of " + std::string(m_variant.items) +
                 " that can be imported at one time is 500. You have attempted to import " + count + " lines." +
                 std::string(kLineBreak) +
                 "You may create mulitple files with 500 or less lines from your large import file and import them "
                 "separately if you wish.",
             kLimitTitle);
  // Nobody is shown this message, but trace readers see that it is made.
  addError("The maximum number of lines that can be imported is 500. " + count + " lines attempted.");
}

void LineItemFile::showErrors() {
  StringsPtr headers = ImExModule::getFormatColumns(formatKey(m_request));
  if (!headers)
    throw RuntimeError(ErrorNumber::objectVariableNotSet, kSource);
  // The list is the catalogue's own, so each file with errors leaves one more such column in it; its count stays.
  headers->add(std::string(kErrorsColumn));
  Integer columnCount = m_request.tabCount() + 1;
  Integer delimiter = m_request.DelimiterAscii();
  m_request.showErrors.raise(m_fileName, m_rows, m_errors, m_lineNumber, columnCount, headers, delimiter);
}

template <class Record>
CollectionPtr<std::shared_ptr<Record>> readRecords(ImExRequest& request, const Variant& variant) {
  auto records = std::make_shared<Collection<std::shared_ptr<Record>>>();
  LineItemFile file(request, variant);
  file.read([&]() -> LineItemRecord& {
    const auto record = std::make_shared<Record>();
    records->add(record);
    return *record;
  });
  if (file.hasTooManyLines()) {
    file.reportTooManyLines();
    return nullptr;
  }
  if (!file.hasErrors())
    return records;
  file.showErrors();
  return std::make_shared<Collection<std::shared_ptr<Record>>>();
}

template <class Record>
CollectionPtr<std::shared_ptr<Record>> serialize(ImExRequest& request, const Variant& variant) {
  return traced(
      {kSource, variant.procedure}, [&] { return readRecords<Record>(request, variant); }, ShowBox{});
}

} // namespace

ProjectLineItemsPtr ImExRequest::serializeProjectLineItemFile() {
  return serialize<ImportProjectLineItemBean>(*this, kProject);
}

QuoteLineItemsPtr ImExRequest::serializeQuoteLineItemFile() {
  return serialize<ImportQuoteLIneItemBean>(*this, kQuote);
}

OrderLineItemsPtr ImExRequest::serializeOrderLineItemFile() {
  return serialize<ImportOrderLineItemBean>(*this, kOrder);
}

} // namespace imex
