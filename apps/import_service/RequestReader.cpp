#include "import_service/RequestReader.h"

#include "import_service/Fault.h"
#include "import_service/XmlGuard.h"
#include "import_service/methods.h"
#include "import_service/wording.h"
#include "runtime/text.h"

#include <pugixml.hpp>

#include <string_view>
#include <utility>

namespace imex::import_service {

namespace {

constexpr std::string_view kSoap11 = "http://schemas.xmlsoap.org/soap/envelope/";

/// White space stays, because a line may consist of it.
constexpr unsigned kParseFlags = pugi::parse_minimal | pugi::parse_cdata | pugi::parse_escapes | pugi::parse_eol |
                                 pugi::parse_ws_pcdata | pugi::parse_declaration;

using Name = std::string_view;

Name localName(const pugi::xml_node& node) {
  const Name name = node.name();
  return name.substr(name.find(':') + 1);
}

/// The value of the nearest declaration of the node's prefix; empty where there is none.
std::string_view namespaceOf(const pugi::xml_node& node) {
  const Name name = node.name();
  const std::size_t colon = name.find(':');
  const std::string attribute = colon == Name::npos ? "xmlns" : "xmlns:" + std::string(name.substr(0, colon));
  for (pugi::xml_node at = node; at; at = at.parent())
    if (const pugi::xml_attribute declaration = at.attribute(attribute.c_str()))
      return declaration.value();
  return {};
}

bool isElement(const pugi::xml_node& node) {
  return node.type() == pugi::node_element;
}

/// The child element of this name; none where there is none. A second one is a fault.
pugi::xml_node findChild(const pugi::xml_node& parent, Name name) {
  pugi::xml_node found;
  for (const pugi::xml_node& child : parent.children()) {
    if (!isElement(child) || localName(child) != name)
      continue;
    if (found)
      throw ClientFault(std::string(localName(parent)) + " has more than one " + std::string(name) + ".");
    found = child;
  }
  return found;
}

pugi::xml_node childOf(const pugi::xml_node& parent, Name name) {
  const pugi::xml_node found = findChild(parent, name);
  if (!found)
    throw ClientFault(std::string(localName(parent)) + " has no " + std::string(name) + ".");
  return found;
}

/// The text of an element that has nothing but text in it.
std::string textOf(const pugi::xml_node& element) {
  std::string text;
  for (const pugi::xml_node& child : element.children()) {
    if (isElement(child))
      throw ClientFault(shortened(localName(element)) + " holds the element " + shortened(localName(child)) +
                        " where only text is expected.");
    text += child.value();
  }
  return text;
}

std::string valueOf(const pugi::xml_node& information, Name name) {
  return textOf(childOf(information, name));
}

void requireValue(const pugi::xml_node& information, Name name, Name only) {
  const std::string value = valueOf(information, name);
  if (value != only)
    throw ClientFault(std::string(name) + " must be " + std::string(only) + ", not " + inQuotes(value) + ".");
}

bool flagOf(const pugi::xml_node& information, Name name) {
  const std::string value = valueOf(information, name);
  if (equalsIgnoringCase(value, "true"))
    return true;
  if (!equalsIgnoringCase(value, "false"))
    throw ClientFault(std::string(name) + " must be true or false, not " + inQuotes(value) + ".");
  return false;
}

char delimiterOf(const std::string& word) {
  if (word == "TAB")
    return '\t';
  if (word == "PIPE")
    return '|';
  throw ClientFault("DELIMITER must be TAB or PIPE, not " + inQuotes(word) + ".");
}

void readInformation(const pugi::xml_node& information, ImportRequest& request) {
  requireValue(information, "IMPORTEXPORT", "IMPORT");
  request.dataType = valueOf(information, "DATATYPE");
  requireValue(information, "SCHEDULE", "INSTANT");
  request.dataOrigin = valueOf(information, "DATAORIGIN");
  request.delimiter = delimiterOf(valueOf(information, "DELIMITER"));
  request.userName = valueOf(information, "USERNAME");
  request.allowWarnings = flagOf(information, "ALLOWWARNINGS");
  request.allowTruncation = flagOf(information, "ALLOWTRUNCATION");
}

std::string lineOf(const pugi::xml_node& element, std::size_t number, char delimiter) {
  if (localName(element) != "LINE")
    throw ClientFault("LINES holds the element " + shortened(localName(element)) + " where only LINE is expected.");
  std::string line = textOf(element);
  if (!line.ends_with(delimiter))
    throw ClientFault("LINE " + std::to_string(number) + " does not end with the delimiter " +
                      (delimiter == '|' ? "PIPE" : "TAB") + ".");
  line.pop_back();
  return line;
}

void readLines(const pugi::xml_node& lines, ImportRequest& request) {
  for (const pugi::xml_node& child : lines.children())
    if (isElement(child))
      request.lines.push_back(lineOf(child, request.lines.size() + 1, request.delimiter));
}

void requireUtf8(const pugi::xml_document& document) {
  const std::string_view encoding = document.first_child().attribute("encoding").value();
  if (document.first_child().type() == pugi::node_declaration && !encoding.empty() &&
      !equalsIgnoringCase(encoding, "UTF-8") && !equalsIgnoringCase(encoding, "US-ASCII"))
    throw ClientFault("The request must be in UTF-8, not in " + inQuotes(encoding) + ".");
}

pugi::xml_node envelopeOf(const pugi::xml_document& document) {
  const pugi::xml_node root = document.document_element();
  if (localName(root) != "Envelope")
    throw ClientFault("The request is not a SOAP envelope but the element " + inQuotes(localName(root)) + ".");
  if (namespaceOf(root) != kSoap11)
    throw Fault(FaultCode::versionMismatch, "The envelope is not of SOAP 1.1, the namespace " + std::string(kSoap11) +
                                                ", but of " + inQuotes(namespaceOf(root)) + ".");
  return root;
}

/// The one element of the body.
pugi::xml_node methodOf(const pugi::xml_node& envelope) {
  pugi::xml_node method;
  for (const pugi::xml_node& child : childOf(envelope, "Body").children()) {
    if (!isElement(child))
      continue;
    if (method)
      throw ClientFault("Body has more than one element.");
    method = child;
  }
  if (!method)
    throw ClientFault("Body has no element.");
  return method;
}

/// The element that holds REQUESTINFORMATION and LINES.
pugi::xml_node contentOf(const pugi::xml_node& method) {
  const Name name = localName(method);
  if (name == kImportData)
    return childOf(method, "HXImportBean");
  if (!dataTypeOf(name))
    throw ClientFault("The service has no method " + inQuotes(name) + ".");
  return childOf(childOf(method, "PARAM_ELEMENT"), "IMPORTEXPORTWRAPPER");
}

} // namespace

ImportRequest readRequest(std::string xml) {
  requireSoundXml(xml);
  pugi::xml_document document;
  const pugi::xml_parse_result parsed =
      document.load_buffer_inplace(xml.data(), xml.size(), kParseFlags, pugi::encoding_utf8);
  if (!parsed)
    throw ClientFault("The request is not well-formed XML: " + std::string(parsed.description()) + " at byte " +
                      std::to_string(parsed.offset) + ".");
  requireUtf8(document);

  ImportRequest request;
  const pugi::xml_node envelope = envelopeOf(document);
  if (const pugi::xml_node user = findChild(findChild(envelope, "Header"), "userID"))
    request.userId = textOf(user);
  const pugi::xml_node method = methodOf(envelope);
  request.methodName = localName(method);
  request.space = namespaceOf(method);
  const pugi::xml_node content = contentOf(method);
  readInformation(childOf(content, "REQUESTINFORMATION"), request);
  readLines(childOf(content, "LINES"), request);
  return request;
}

} // namespace imex::import_service
