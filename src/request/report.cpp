#include "request/ImExRequest.h"

#include "host/Files.h"
#include "host/Services.h"
#include "module/ImExModule.h"
#include "module/tracing.h"
#include "request/shared.h"
#include "runtime/text.h"

#include <algorithm>

namespace imex {

namespace {

constexpr std::string_view kSource = "ImExRequest";

// The closing tags stand in this order throughout; the page is written exactly so.
constexpr std::string_view kOpenCell = "<tr><td nowrap>";
constexpr std::string_view kCloseCell = "</tr></td>";
constexpr std::string_view kLargeFont = "<font size= +1>";
constexpr std::string_view kRedFont = "<font color= red>";
constexpr std::string_view kCloseFont = "</font>";

bool areAscii(const Strings& texts) {
  return std::all_of(texts.begin(), texts.end(), [](const std::string& text) { return isAscii(text); });
}

bool areAscii(const Collection<ImExFormatPtr>& formats) {
  return std::all_of(formats.begin(), formats.end(), [](const ImExFormatPtr& format) { return isAscii(*format); });
}

/// The results page while it is written. A page with a character beyond ASCII starts with the UTF-8 mark, so that a
/// browser reads it right.
class Page {
 public:
  Page(const std::string& path, bool isAscii) : m_file(path, isAscii ? Encoding::utf8 : Encoding::utf8WithMark) {
    write({"<html>", "<head><Title> Validation Results</title></head>", "<h1><center>Validation Results</center></h1>",
           "<table>"});
  }

  void write(std::initializer_list<std::string_view> lines) {
    for (const std::string_view line : lines)
      m_file.writeLine(line);
  }

  void finish() {
    write({"</table></html>"});
    m_file.close();
  }

 private:
  ImExModule::OutputFile m_file;
};

void writeVerdict(Page& page, ImExFormat& format) {
  const std::string label = "LINE # : " + toText(format.LineNumber());
  const std::string status = format.ActionSuccessful() ? "   STATUS  : Import successful for this line."
                                                       : "   STATUS  : Import failed for this line.";
  page.write({kOpenCell, kLargeFont, label + "   DATA    : " + format.Line(), kCloseFont, kCloseCell});
  page.write({kOpenCell, label + status, kCloseCell});
  for (const std::string& text : *format.errors())
    page.write({kOpenCell, kRedFont, label + "   ERROR   : " + text, kCloseFont, kCloseCell});
  for (const std::string& text : *format.Warnings())
    page.write({kOpenCell, label + "   WARNING : " + text, kCloseCell});
  page.write({kOpenCell, " ", kCloseCell});
}

} // namespace

/// The path of the page. Error 75 where the import file itself stands there: the user's file is never written.
std::string ImExRequest::resultsPagePath() const {
  const std::string path = Directory() + std::string(kResultsPageName);
  if (host::required(host::services().files).isSameFile(path, CheckedFileName()))
    throw RuntimeError(ErrorNumber::pathFileAccessError, kSource);
  return path;
}

void ImExRequest::writeResultsReport() {
  traced(
      {kSource, "writeResultsReport"},
      [&] {
        const ImExFormatsPtr formats = m_currentReply->ImExFormats();
        Page page(resultsPagePath(), areAscii(*formats));
        for (const ImExFormatPtr& format : *formats)
          writeVerdict(page, *format);
        page.finish();
      },
      [&](const CaughtError&) { SerializationFailed.raise(std::string(kResultsNotDisplayed)); });
}

void ImExRequest::writeErrorListReport(const Strings& texts) {
  traced(
      {kSource, "writeErrorListReport"},
      [&] {
        const std::string path = resultsPagePath();
        Page page(path, areAscii(texts));
        for (const std::string& text : texts)
          page.write({kOpenCell, kLargeFont, text, kCloseFont, kCloseCell});
        page.finish();
        if (!texts.isEmpty())
          ImExModule::launchInternetExplorer(path);
      },
      // The lower-case start is part of the text.
      [&](const CaughtError&) { SerializationFailed.raise("the results cannot be displayed in Internet Explorer."); });
}

} // namespace imex
