#include "request/ImExRequest.h"

#include "host/MessageBox.h"
#include "host/Services.h"
#include "module/ImExModule.h"
#include "module/tracing.h"
#include "request/LineCheck.h"
#include "request/correction.h"
#include "request/shared.h"

#include <memory>

namespace imex {

namespace {

constexpr std::string_view kSource = "ImExRequest";
constexpr std::size_t kGreatestErrorCount = 10;

} // namespace

ImExRequest::FileReading ImExRequest::readImportFile(const AddLine& addLine) {
  return readFile("readImportFile", addLine);
}

ImExRequest::FileReading ImExRequest::addImportLines(const AddLine& addLine) {
  return readFile("addImportLines", addLine);
}

ImExRequest::FileReading ImExRequest::readFile(std::string_view procedure, const AddLine& addLine) {
  FileReading reading{std::make_shared<Strings>()};
  traced(
      {kSource, procedure}, [&] { readLines(reading, addLine); },
      [&](const CaughtError&) {
        reading.isComplete = false;
        SerializationFailed.raise(std::string(kCannotOpenFile));
      });
  return reading;
}

void ImExRequest::readLines(FileReading& reading, const AddLine& addLine) {
  m_rowCount = 0;
  m_fileIsClean = true;
  if (!ImExModule::checkFileExists(CheckedFileName())) {
    host::required(host::services().messageBox).show(kCannotOpenFile, host::kInformationStyle, kMaintenanceTitle);
    throw LeaveEarly();
  }
  const LineCheck quickly(m_delimiterAscii, m_tabCount, requiredFields(m_dataType, m_dataOrigin));
  const bool isQuick = mayPassUnchecked();
  ImExModule::InputFile file(CheckedFileName());
  std::string_view line;
  while (file.readLine(line)) {
    if (line.empty())
      continue;
    ++m_rowCount;
    if (!(isQuick && quickly.passes(line)) && !isGood(line, *reading.errors))
      break;
    addLine(line);
  }
  reading.isComplete = m_fileIsClean;
}

/// Whether a line that LineCheck passes needs no further look. The check itself is traced for each line, so that a
/// trace log that takes traces gets all of them; it records an error for each line of a format that the catalogue
/// lacks; and on the central server it judges a field by what is in it.
bool ImExRequest::mayPassUnchecked() const {
  return !isTracing() && ImExModule::isFormatCounted(m_dataType + m_dataOrigin) && !isCentralizedAgent;
}

/// Checks one line and keeps the first of what is wrong with it. False where the reading ends with it.
bool ImExRequest::isGood(std::string_view line, Strings& errors) {
  const Integer delimiter = DelimiterAscii();
  const StringsPtr findings = simpleClientValidation(line, delimiter, tabCount());
  if (!findings->isEmpty()) {
    errors.add(findings->item(1));
    m_fileIsClean = false;
    return false;
  }
  return errors.count() <= kGreatestErrorCount;
}

void ImExRequest::askToCorrect(const Strings& errors) {
  const host::Answer answer = host::required(host::services().messageBox)
                                  .show(correctionQuestion(errors), host::kQuestionStyle, kMaintenanceTitle);
  if (answer != host::Answer::yes || !checkFileForEdit())
    return;
  const std::string origin = DataOrigin();
  if (origin == "AGENT" && (m_dataType == "CUSTOMER" || m_dataType == "PRODUCT"))
    tabCount(ImExModule::getFormatColumnCount(formatKey()));
  raiseEditImportFile();
}

void ImExRequest::raiseEditImportFile() {
  std::string message = "File format incorrect.";
  Integer rows = rowCount();
  Integer columns = tabCount();
  std::string fileName = CheckedFileName();
  StringsPtr headers = ImExModule::getFormatColumns(formatKey());
  Integer delimiter = DelimiterAscii();
  editImportFile.raise(message, rows, columns, fileName, headers, delimiter);
}

} // namespace imex
