#include "request/ImExRequest.h"

#include "module/ImExModule.h"
#include "module/tracing.h"
#include "request/failureList.h"
#include "request/shared.h"

#include <memory>
#include <utility>

namespace imex {

namespace {

constexpr std::string_view kSource = "ImExRequest";

/// Above this many texts the answer is not shown in the editor; the page alone has them.
constexpr int kGreatestAnswerInEditor = 1000;

constexpr std::string_view kCommentsColumn = "Comments";

void addTexts(Collection<std::shared_ptr<ImportExportErrorBean>>& rows, Integer number, const std::string& label,
              const StringsPtr& texts) {
  if (isEmpty(texts))
    return;
  for (const std::string& text : *texts)
    addErrorRow(rows, number, label + text);
}

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
    if (!AllowWarnings() && !isEmpty(format->cWarnings) && !failures.add(format->LineNumber()))
      break;
    if (!isEmpty(format->cErrors) && !failures.add(format->LineNumber()))
      break;
  }
  return failures.text();
}

/// The messages and the fields of one line.
void ImExRequest::addRows(const ImExFormat& format, const std::string& failures, ErrorBeansPtr& errors,
                          RowsPtr& lines) {
  const Integer number = format.LineNumber();
  addErrorRow(*errors, number,
              format.ActionSuccessful()
                  ? "Import successful for this line."
                  : "Import failed for this line due to errors and/or warnings on line(s): " + failures);
  addTexts(*errors, number, "Error : ", format.cErrors);
  addTexts(*errors, number, "Warning : ", format.cWarnings);
  const std::string line = format.Line();
  lines->add(ImExModule::Parse(line, DelimiterAscii()));
}

/// Whether somebody takes the rows, or the trace of their making.
bool ImExRequest::areRowsSeen() const {
  return showErrors.hasHandlers() || isTracing();
}

/// Whether the splitting of the line may fail, so that it is done although nobody takes the fields.
bool ImExRequest::isHardToSplit(const ImExFormat& format) const {
  return m_delimiterAscii < 0 || std::cmp_greater(lineOf(format).size(), Integer::kMax);
}

void ImExRequest::mergeLineResults() {
  traced(
      {kSource, "mergeLineResults"},
      [&] {
        const std::string failures = failureList();
        auto errors = std::make_shared<Collection<std::shared_ptr<ImportExportErrorBean>>>();
        auto lines = std::make_shared<Collection<StringsPtr>>();
        const ImExFormatsPtr formats = m_currentReply->ImExFormats();
        for (const ImExFormatPtr& format : *formats) {
          if (areRowsSeen() || isHardToSplit(*format))
            addRows(*format, failures, errors, lines);
        }
        StringsPtr headers = ImExModule::getFormatColumns(formatKey());
        if (!headers)
          throw RuntimeError(ErrorNumber::objectVariableNotSet, kSource);
        // The list is the catalogue's own, so each answer leaves one more such column in it; its count stays.
        headers->add(std::string(kCommentsColumn));
        writeResultsReport();

        std::string fileName = CheckedFileName();
        Integer rows = formats->count();
        Integer columns = tabCount() + 1;
        Integer delimiter = DelimiterAscii();
        showErrors.raise(fileName, lines, errors, rows, columns, headers, delimiter);
      },
      [&](const CaughtError&) { SerializationFailed.raise(std::string(kResultsNotDisplayed)); });
}

} // namespace imex
