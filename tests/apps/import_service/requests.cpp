#include "apps/import_service/requests.h"

#include <gtest/gtest.h>

namespace imex::import_service::test {

namespace {

std::string escaped(std::string_view text) {
  std::string xml;
  for (const char c : text) {
    if (c == '&')
      xml += "&amp;";
    else if (c == '<')
      xml += "&lt;";
    else if (c == '\r')
      xml += "&#13;";
    else
      xml += c;
  }
  return xml;
}

std::string tagged(const std::string& name, const std::string& content) {
  return "<" + name + ">" + content + "</" + name + ">";
}

std::string informationXml(const RequestParts& parts) {
  return tagged("REQUESTINFORMATION",
                tagged("IMPORTEXPORT", parts.importExport) + tagged("DATATYPE", parts.dataType) +
                    tagged("SCHEDULE", parts.schedule) + tagged("DATAORIGIN", parts.dataOrigin) +
                    tagged("DELIMITER", parts.delimiter) + tagged("USERNAME", escaped(parts.userName)) +
                    tagged("ALLOWWARNINGS", parts.allowWarnings) + tagged("ALLOWTRUNCATION", parts.allowTruncation));
}

std::string linesXml(const RequestParts& parts) {
  std::string xml;
  for (const std::string& line : parts.lines)
    xml += tagged("LINE", escaped(line) + (parts.delimiter == "TAB" ? '\t' : '|'));
  return tagged("LINES", xml);
}

} // namespace

std::string requestXml(const RequestParts& parts) {
  const std::string content =
      parts.method == "importData"
          ? tagged("HXImportBean", informationXml(parts) + linesXml(parts))
          : tagged("PARAM_ELEMENT", tagged("IMPORTEXPORTWRAPPER", linesXml(parts) + informationXml(parts)));
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>"
         "<S:Envelope xmlns:S=\"http://schemas.xmlsoap.org/soap/envelope/\"><S:Header>" +
         tagged("userID", escaped(parts.userId)) + "</S:Header><S:Body><m:" + parts.method + " xmlns:m=\"" +
         parts.space + "\" S:encodingStyle=\"http://xml.apache.org/xml-soap/literalxml\">" + content +
         "</m:" + parts.method + "></S:Body></S:Envelope>";
}

std::string replaced(std::string text, std::string_view from, std::string_view to) {
  const std::size_t at = text.find(from);
  if (at == std::string::npos) {
    ADD_FAILURE() << "there is no " << from << " in " << text;
    return text;
  }
  return text.replace(at, from.size(), to);
}

std::vector<std::string> elements(std::string_view xml, std::string_view name) {
  const std::string start = "<" + std::string(name) + ">";
  const std::string end = "</" + std::string(name) + ">";
  std::vector<std::string> found;
  for (std::size_t at = xml.find(start); at != std::string_view::npos; at = xml.find(start, at)) {
    at += start.size();
    found.emplace_back(xml.substr(at, xml.find(end, at) - at));
  }
  return found;
}

std::string element(std::string_view xml, std::string_view name) {
  const std::vector<std::string> found = elements(xml, name);
  EXPECT_EQ(found.size(), 1U) << name << " in " << xml;
  return found.empty() ? "" : found.front();
}

Formats smallFormats() {
  return {{"CUSTOMERAGENT",
           {{"Code", 4, true, false, true}, {"Name", 10, true, false, false}, {"Credit Limit", 6, false, true, false}}},
          {"INVOICEAGENT",
           {{"Number", 5, true, false, true}, {"Line", 2, true, true, true}, {"Amount", 8, false, true, false}}},
          {"BALLASTSHALVIK", {{"Catalog Number", 5, true, false, true}}}};
}

} // namespace imex::import_service::test
