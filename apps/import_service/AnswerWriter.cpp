#include "import_service/AnswerWriter.h"

#include <cstddef>
#include <string_view>
#include <vector>

namespace imex::import_service {

namespace {

constexpr std::string_view kStart = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                    "<SOAP-ENV:Envelope xmlns:SOAP-ENV=\"http://schemas.xmlsoap.org/soap/envelope/\">"
                                    "<SOAP-ENV:Body>";
constexpr std::string_view kEnd = "</SOAP-ENV:Body></SOAP-ENV:Envelope>\n";

/// About what a line's verdict takes besides the line itself.
constexpr std::size_t kVerdictSize = 200;

std::string_view escapeOf(char c) {
  switch (c) {
  case '&':
    return "&amp;";
  case '<':
    return "&lt;";
  case '>':
    return "&gt;";
  default:
    return "&#13;"; // a reader would turn a bare one into a line feed
  }
}

void appendEscaped(std::string& xml, std::string_view text) {
  for (;;) {
    const std::size_t end = text.find_first_of("&<>\r");
    xml += text.substr(0, end);
    if (end == std::string_view::npos)
      return;
    xml += escapeOf(text[end]);
    text.remove_prefix(end + 1);
  }
}

void appendElement(std::string& xml, std::string_view name, std::string_view text) {
  xml.append("<").append(name).append(">");
  appendEscaped(xml, text);
  xml.append("</").append(name).append(">");
}

void appendFlag(std::string& xml, std::string_view name, bool value) {
  appendElement(xml, name, value ? "true" : "false");
}

void appendTexts(std::string& xml, std::string_view name, const std::vector<std::string>& texts) {
  xml.append("<").append(name).append(">");
  for (const std::string& text : texts)
    appendElement(xml, "item", text);
  xml.append("</").append(name).append(">");
}

std::size_t sizeOf(const ImportRequest& request) {
  std::size_t size = kStart.size() + kEnd.size();
  for (const std::string& line : request.lines)
    size += line.size() + kVerdictSize;
  return size;
}

void appendVerdicts(std::string& xml, const ImportRequest& request, const ImportResult& result) {
  xml += "<importExportResultBean>";
  for (std::size_t i = 0; i < result.verdicts.size(); ++i) {
    xml += "<item>";
    appendFlag(xml, "isIuccessful", result.isAccepted);
    appendElement(xml, "line", request.lines[i]);
    appendElement(xml, "lineNumber", std::to_string(i + 1));
    appendTexts(xml, "errors", result.verdicts[i].errors);
    appendTexts(xml, "warnings", result.verdicts[i].warnings);
    xml += "</item>";
  }
  xml += "</importExportResultBean>";
}

std::string_view nameOf(FaultCode code) {
  switch (code) {
  case FaultCode::client:
    return "SOAP-ENV:Client";
  case FaultCode::versionMismatch:
    return "SOAP-ENV:VersionMismatch";
  case FaultCode::server:
    break;
  }
  return "SOAP-ENV:Server";
}

} // namespace

std::string writeAnswer(const ImportRequest& request, const ImportResult& result) {
  std::string xml;
  xml.reserve(sizeOf(request));
  xml.append(kStart).append("<ns1:").append(request.methodName).append("Response xmlns:ns1=\"");
  xml.append(request.space).append("\"><return>");
  appendElement(xml, "reply", result.reply);
  appendFlag(xml, "hasErrors", result.hasErrors);
  appendFlag(xml, "hasWarnings", result.hasWarnings);
  appendVerdicts(xml, request, result);
  xml.append("</return></ns1:").append(request.methodName).append("Response>").append(kEnd);
  return xml;
}

std::string writeFault(const Fault& fault) {
  std::string xml(kStart);
  xml += "<SOAP-ENV:Fault>";
  appendElement(xml, "faultcode", nameOf(fault.code()));
  appendElement(xml, "faultstring", fault.what());
  xml += "</SOAP-ENV:Fault>";
  return xml.append(kEnd);
}

} // namespace imex::import_service
