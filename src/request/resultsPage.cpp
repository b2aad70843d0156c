#include "request/resultsPage.h"

#include "module/ImExModule.h"
#include "module/tracing.h"
#include "runtime/text.h"

#include <algorithm>
#include <string_view>

namespace imex {

namespace {

// What stands around the texts. The closing tags stand in this order throughout; the page is written exactly so.
constexpr std::string_view kOpenData = "<tr><td nowrap>\r\n<font size= +1>\r\nLINE # : ";
constexpr std::string_view kOpenError = "<tr><td nowrap>\r\n<font color= red>\r\nLINE # : ";
constexpr std::string_view kOpenText = "<tr><td nowrap>\r\n<font size= +1>\r\n";
constexpr std::string_view kOpenPlain = "<tr><td nowrap>\r\nLINE # : ";
constexpr std::string_view kCloseWithFont = "\r\n</font>\r\n</tr></td>\r\n";
constexpr std::string_view kClose = "\r\n</tr></td>\r\n";
constexpr std::string_view kSpacer = "<tr><td nowrap>\r\n \r\n</tr></td>\r\n";
constexpr std::string_view kSuccessful = "   STATUS  : Import successful for this line.";
constexpr std::string_view kFailed = "   STATUS  : Import failed for this line.";

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
  Page(const std::string& path, bool isAscii)
      : m_file(path, isAscii ? Encoding::utf8 : Encoding::utf8WithMark, host::Owner::component) {
    m_file.writeLine("<html>");
    m_file.writeLine("<head><Title> Validation Results</title></head>");
    m_file.writeLine("<h1><center>Validation Results</center></h1>");
    m_file.writeLine("<table>");
  }

  Page& operator<<(std::string_view text) {
    m_file.write(text);
    return *this;
  }

  void finish() {
    m_file.writeLine("</table></html>");
    m_file.close();
  }

 private:
  ImExModule::OutputFile m_file;
};

void addTexts(Page& page, std::string_view open, std::string_view number, std::string_view label,
              const StringsPtr& texts, std::string_view close) {
  if (isEmpty(texts))
    return;
  for (const std::string& text : *texts)
    page << open << number << label << text << close;
}

void addVerdict(Page& page, const ImExFormat& format) {
  const std::string number = toText(format.LineNumber());
  if (isTracing())
    (void)format.Line(); // for its trace; the text need not be copied
  page << kOpenData << number << "   DATA    : " << lineOf(format) << kCloseWithFont;
  page << kOpenPlain << number << (format.ActionSuccessful() ? kSuccessful : kFailed) << kClose;
  addTexts(page, kOpenError, number, "   ERROR   : ", format.cErrors, kCloseWithFont);
  addTexts(page, kOpenPlain, number, "   WARNING : ", format.cWarnings, kClose);
  page << kSpacer;
}

} // namespace

void writeResultsPage(const std::string& path, const Collection<ImExFormatPtr>& formats) {
  Page page(path, areAscii(formats));
  for (const ImExFormatPtr& format : formats)
    addVerdict(page, *format);
  page.finish();
}

void writeTextPage(const std::string& path, const Strings& texts) {
  Page page(path, areAscii(texts));
  for (const std::string& text : texts)
    page << kOpenText << text << kCloseWithFont;
  page.finish();
}

} // namespace imex
