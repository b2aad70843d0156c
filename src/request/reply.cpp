#include "request/ImExRequest.h"

#include "module/ImExModule.h"
#include "module/tracing.h"
#include "request/failureList.h"
#include "request/shared.h"

#include <memory>

namespace imex {

namespace {

constexpr std::string_view kSource = "ImExRequest";

/// Above this many texts the answer is not shown in the editor; the page alone has them.
constexpr int kGreatestAnswerInEditor = 1000;

constexpr std::string_view kCommentsColumn = "Comments";

} // namespace

void ImExRequest::Deserialize(host::SoapNode& resultNode) {
  traced(
      {kSource, "Deserialize"},
      [&] {
        m_currentReply = std::make_shared<ImExReply>();
        m_currentReply->processReply(resultNode);
        MessageReceived.raise(m_currentReply);
        if (m_currentReply->intTotalErrorsAndWarnings <= kGreatestAnswerInEditor)
          mergeLineResults();
        else
          writeResultsReport();
      },
      Reraise{});
}

std::string ImExRequest::failureList() {
  FailureList failures;
  for (const ImExFormatPtr& format : *m_currentReply->ImExFormats()) {
    if (!AllowWarnings() && !format->Warnings()->isEmpty() && !failures.add(format->LineNumber()))
      break;
    if (!format->errors()->isEmpty() && !failures.add(format->LineNumber()))
      break;
  }
  return failures.text();
}

/// The messages and the fields of one line.
void ImExRequest::addRows(ImExFormat& format, const std::string& failures, ErrorBeansPtr& errors, RowsPtr& lines) {
  const Integer number = format.LineNumber();
  addErrorRow(*errors, number,
              format.ActionSuccessful()
                  ? "Import successful for this line."
                  : "Import failed for this line due to errors and/or warnings on line(s): " + failures);
  for (const std::string& text : *format.errors())
    addErrorRow(*errors, number, "Error : " + text);
  for (const std::string& text : *format.Warnings())
    addErrorRow(*errors, number, "Warning : " + text);
  lines->add(ImExModule::Parse(format.Line(), DelimiterAscii()));
}

void ImExRequest::mergeLineResults() {
  traced(
      {kSource, "mergeLineResults"},
      [&] {
        const std::string failures = failureList();
        auto errors = std::make_shared<Collection<std::shared_ptr<ImportExportErrorBean>>>();
        auto lines = std::make_shared<Collection<StringsPtr>>();
        for (const ImExFormatPtr& format : *m_currentReply->ImExFormats())
          addRows(*format, failures, errors, lines);
        StringsPtr headers = ImExModule::getFormatColumns(formatKey());
        if (!headers)
          throw RuntimeError(ErrorNumber::objectVariableNotSet, kSource);
        // The list is the catalogue's own, so each answer leaves one more such column in it; its count stays.
        headers->add(std::string(kCommentsColumn));
        writeResultsReport();

        std::string fileName = CheckedFileName();
        Integer rows = lines->count();
        Integer columns = tabCount() + 1;
        Integer delimiter = DelimiterAscii();
        showErrors.raise(fileName, lines, errors, rows, columns, headers, delimiter);
      },
      [&](const CaughtError&) { SerializationFailed.raise(std::string(kResultsNotDisplayed)); });
}

} // namespace imex
