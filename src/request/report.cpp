#include "request/ImExRequest.h"

#include "module/ImExModule.h"
#include "module/tracing.h"
#include "request/shared.h"

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

bool isAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

bool isAscii(const Strings& texts) {
  return std::all_of(texts.begin(), texts.end(), [](const std::string& text) { return isAscii(text); });
}

bool isAscii(const Collection<ImExFormatPtr>& formats) {
  return std::all_of(formats.begin(), formats.end(), [](const ImExFormatPtr& format) {
    return isAscii(format->Line()) && isAscii(*format->errors()) && isAscii(*format->Warnings());
  });
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

void ImExRequest::writeResultsReport() {
  traced(
      {kSource, "writeResultsReport"},
      [&] {
        const ImExFormatsPtr formats = m_currentReply->ImExFormats();
        Page page(Directory() + std::string(kResultsPageName), isAscii(*formats));
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
        const std::string path = Directory() + std::string(kResultsPageName);
        Page page(path, isAscii(texts));
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
