#include "platform/soap/TreeAnswer.h"

#include "platform/soap/errors.h"
#include "platform/soap/xmlText.h"
#include "runtime/text.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <utility>
#include <vector>

#include <pugixml.hpp>

namespace imex::platform {

namespace {

constexpr const char* kSource = kEnvelopeSource;

// Declarations and processing instructions are left out of the tree. White space is a text like any other.
constexpr unsigned kParsing = pugi::parse_cdata | pugi::parse_escapes | pugi::parse_eol | pugi::parse_wconv_attribute |
                              pugi::parse_ws_pcdata | pugi::parse_doctype | pugi::parse_fragment;

// --- Names ----------------------------------------------------------------------------------------------------------

/// The namespace of an element; empty where it has none.
std::string_view spaceOf(const pugi::xml_node& element) {
  const std::string_view own = prefix(element.name());
  const std::string declaration = own.empty() ? "xmlns" : "xmlns:" + std::string(own.substr(0, own.size() - 1));
  for (pugi::xml_node node = element; node; node = node.parent())
    if (const pugi::xml_attribute attribute = node.attribute(declaration.c_str()))
      return attribute.value();
  return {};
}

bool isSoapElement(const pugi::xml_node& element, std::string_view name) {
  return localName(element.name()) == name && spaceOf(element) == kSoapSpace;
}

// --- Reading the tree -----------------------------------------------------------------------------------------------

bool isElement(const pugi::xml_node& node) {
  return node.type() == pugi::node_element;
}

bool isText(const pugi::xml_node& node) {
  return node.type() == pugi::node_pcdata || node.type() == pugi::node_cdata;
}

template <class Predicate>
pugi::xml_node firstElement(const pugi::xml_node& parent, Predicate isWanted) {
  return parent.find_child([&](const pugi::xml_node& node) { return isElement(node) && isWanted(node); });
}

pugi::xml_node firstElement(const pugi::xml_node& parent) {
  return firstElement(parent, [](const pugi::xml_node&) { return true; });
}

pugi::xml_node childNamed(const pugi::xml_node& parent, std::string_view name) {
  return firstElement(parent, [&](const pugi::xml_node& node) { return localName(node.name()) == name; });
}

pugi::xml_node soapChild(const pugi::xml_node& parent, std::string_view name) {
  return firstElement(parent, [&](const pugi::xml_node& node) { return isSoapElement(node, name); });
}

std::string textOf(const pugi::xml_node& element) {
  std::string text;
  for (const pugi::xml_node& node : element)
    if (isText(node))
      text += node.value();
  return text;
}

bool isBlank(std::string_view text) {
  return text.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

// --- Filling the tree -----------------------------------------------------------------------------------------------

/// What pugixml made, or error 7 where it had no memory for it.
template <class Made>
Made required(Made made) {
  if (!made)
    throw RuntimeError(ErrorNumber::outOfMemory, kSource);
  return made;
}

void requireStored(bool isStored) {
  if (!isStored)
    throw RuntimeError(ErrorNumber::outOfMemory, kSource);
}

void requireName(std::string_view name) {
  if (!isXmlName(name))
    throw RuntimeError(ErrorNumber::invalidProcedureCall, kSource);
}

pugi::xml_node appendElement(pugi::xml_node parent, const std::string& name) {
  return required(parent.append_child(name.c_str()));
}

/// Gives the element an attribute, or takes it away where the value is empty.
void setAttribute(pugi::xml_node element, const char* name, std::string_view value) {
  if (value.empty()) {
    element.remove_attribute(name);
    return;
  }
  requireXmlText(value, name);
  pugi::xml_attribute attribute = element.attribute(name);
  if (!attribute)
    attribute = required(element.append_attribute(name));
  requireStored(attribute.set_value(std::string(value).c_str()));
}

/// The prefixes are declared on the element itself, so that its children stay without a namespace.
void setType(pugi::xml_node element, std::string_view type, std::string_view typeSpace) {
  if (type.empty())
    return;
  setAttribute(element, "xmlns:xsi", kSchemaInstanceSpace);
  setAttribute(element, "xmlns:t", typeSpace);
  setAttribute(element, "xsi:type", (typeSpace.empty() ? "" : "t:") + std::string(type));
}

// --- The nodes that are handed out ----------------------------------------------------------------------------------

class Node : public host::SoapNode {
 public:
  explicit Node(pugi::xml_node element) : m_element(element) {}

  pugi::xml_node element() const { return m_element; }

  std::string name() const override { return std::string(localName(m_element.name())); }
  std::string text() const override { return textOf(m_element); }
  std::size_t count() const override {
    return static_cast<std::size_t>(std::count_if(m_element.begin(), m_element.end(), isElement));
  }
  host::SoapNode* child(std::string_view localName) override {
    const pugi::xml_node found = childNamed(m_element, localName);
    return found ? &handedOut(found) : nullptr;
  }
  void forEachChild(const std::function<void(host::SoapNode&)>& visit) override;
  host::SoapNode& create(std::string_view name, std::string_view value, std::string_view space, std::string_view type,
                         std::string_view typeSpace) override;

  /// The one object that stands for this child element.
  Node& handedOut(pugi::xml_node child);

 private:
  Node& add(pugi::xml_node child) { return *m_children.emplace_back(std::make_unique<Node>(child)); }

  pugi::xml_node m_element;
  std::vector<std::unique_ptr<Node>> m_children; ///< the children that were handed out so far
};

Node& Node::handedOut(pugi::xml_node child) {
  const auto known = std::find_if(m_children.begin(), m_children.end(),
                                  [&](const std::unique_ptr<Node>& node) { return node->m_element == child; });
  return known == m_children.end() ? add(child) : **known;
}

void Node::forEachChild(const std::function<void(host::SoapNode&)>& visit) {
  // An object for the visit only: an answer may have a great many elements, each of them seen once.
  for (const pugi::xml_node& element : m_element) {
    if (!isElement(element))
      continue;
    Node node(element);
    visit(node);
  }
}

host::SoapNode& Node::create(std::string_view name, std::string_view value, std::string_view space,
                             std::string_view type, std::string_view typeSpace) {
  requireName(name);
  requireXmlText(value, name);
  requireXmlText(space, name);
  requireXmlText(type, name);
  requireXmlText(typeSpace, name);
  const pugi::xml_node element = appendElement(m_element, (space.empty() ? "" : "n:") + std::string(name));
  setAttribute(element, "xmlns:n", space);
  setType(element, type, typeSpace);
  if (!value.empty())
    requireStored(
        required(pugi::xml_node(element).append_child(pugi::node_pcdata)).set_value(std::string(value).c_str()));
  return add(element);
}

// --- Reading an answer ----------------------------------------------------------------------------------------------

bool startsIgnoringCase(std::string_view text, std::string_view start) {
  return equalsIgnoringCase(text.substr(0, start.size()), start);
}

bool isHtml(std::string_view text) {
  const std::string_view start = text.substr(std::min(text.size(), text.find_first_not_of(" \t\r\n")));
  return startsIgnoringCase(start, "<!DOCTYPE HTML") || startsIgnoringCase(start, "<HTML");
}

void requireXml(std::string_view text) {
  if (isBlank(text))
    throw soapError(SoapError::notSoap, kSource, "The answer is empty");
  if (isHtml(text))
    throw notSoapError("The answer is an HTML page and not a SOAP message", text);
  requireCleanMarkup(text);
}

/// Parses `text` in place, so that the document refers to it.
void load(pugi::xml_document& document, std::string& text, std::string_view answer) {
  text += '\n'; // the parser overwrites the last character with its end mark, and would lose it outside of the root
  const pugi::xml_parse_result result =
      document.load_buffer_inplace(text.data(), text.size(), kParsing, pugi::encoding_utf8);
  if (result.status == pugi::status_out_of_memory)
    throw RuntimeError(ErrorNumber::outOfMemory, kSource);
  if (!result)
    throw notSoapError("The answer is not well-formed XML (" + std::string(result.description()) + " at byte " +
                           std::to_string(result.offset) + ")",
                       answer);
}

struct DepthWalker : pugi::xml_tree_walker {
  bool for_each(pugi::xml_node& node) override { return !isElement(node) || depth() < kDeepestLevel; }
};

void requireShallow(pugi::xml_document& document, std::string_view answer) {
  DepthWalker walker;
  if (!document.traverse(walker))
    throw notSoapError("The answer is nested deeper than " + std::to_string(kDeepestLevel) + " elements", answer);
}

/// The root element, with nothing beside it that a document must not have.
pugi::xml_node rootOf(const pugi::xml_document& document, std::string_view answer) {
  const pugi::xml_node root = firstElement(document);
  for (const pugi::xml_node& node : document)
    if (node != root && (node.type() != pugi::node_pcdata || !isBlank(node.value())))
      throw notSoapError("The answer is not well-formed XML (content outside of the root element)", answer);
  return root;
}

[[noreturn]] void throwFault(const pugi::xml_node& fault) {
  std::string text = textOf(childNamed(fault, "faultstring"));
  if (isBlank(text))
    text = textOf(childNamed(fault, "faultcode"));
  if (isBlank(text))
    text = "The service answered with a SOAP fault that has no text";
  throw soapError(SoapError::fault, kSource, std::move(text));
}

/// The element in the body of an answer. A fault is thrown.
pugi::xml_node responseOf(const pugi::xml_node& envelope, std::string_view answer) {
  if (!isSoapElement(envelope, "Envelope"))
    throw notSoapError("The answer is not a SOAP 1.1 message", answer);
  const pugi::xml_node body = soapChild(envelope, "Body");
  if (!body)
    throw notSoapError("The answer is a SOAP message without a body", answer);
  if (const pugi::xml_node fault = soapChild(body, "Fault"))
    throwFault(fault);
  const pugi::xml_node response = firstElement(body);
  if (!response)
    throw notSoapError("The answer is a SOAP message with an empty body", answer);
  return response;
}

// --- Writing --------------------------------------------------------------------------------------------------------

/// Collects the serialised text. A carriage return occurs in texts only, and a parser would turn it into a line feed.
class TextCollector : public pugi::xml_writer {
 public:
  explicit TextCollector(std::string_view start) : m_text(start) {}

  void write(const void* data, std::size_t size) override {
    std::string_view rest(static_cast<const char*>(data), size);
    for (std::size_t at = rest.find('\r'); at != std::string_view::npos; at = rest.find('\r')) {
      m_text.append(rest.substr(0, at)).append("&#13;");
      rest.remove_prefix(at + 1);
    }
    m_text.append(rest);
  }

  std::string take() { return std::move(m_text); }

 private:
  std::string m_text;
};

std::string write(const pugi::xml_document& document) {
  TextCollector text(kXmlDeclaration);
  document.save(text, "", pugi::format_raw | pugi::format_no_declaration, pugi::encoding_utf8);
  return text.take();
}

} // namespace

// --- The message ----------------------------------------------------------------------------------------------------

/// What refers to pugixml.
struct TreeAnswer::Tree {
  Tree(std::string_view data, std::string_view encoding) : text(xmlInUtf8(data, encoding)) {
    requireXml(text);
    load(document, text, data);
    requireShallow(document, data);
    envelope = rootOf(document, data);
    method.emplace(responseOf(envelope, data));
    if (const pugi::xml_node found = soapChild(envelope, "Header"))
      header.emplace(found);
  }

  std::string text; ///< what the document refers to
  pugi::xml_document document;
  pugi::xml_node envelope;
  std::optional<Node> header;
  std::optional<Node> method;
  std::vector<std::unique_ptr<Node>> elements; ///< all of them, in the order of the document, once they were asked for
};

TreeAnswer::TreeAnswer(std::string_view data, std::string_view encoding)
    : m_tree(std::make_unique<Tree>(data, encoding)) {}

TreeAnswer::~TreeAnswer() = default;

void TreeAnswer::setEncodingStyle(std::string_view uri) {
  setAttribute(m_tree->method->element(), "SOAP-ENV:encodingStyle", uri);
}

void TreeAnswer::setMethod(std::string_view name, std::string_view space) {
  requireName(name);
  requireXmlText(space, name);
  pugi::xml_node method = m_tree->method->element();
  // The namespace is declared first, whatever was set before.
  if (!method.attribute("xmlns:ns1"))
    required(method.prepend_attribute("xmlns:ns1"));
  setAttribute(method, "xmlns:ns1", space);
  requireStored(method.set_name(((space.empty() ? "" : "ns1:") + std::string(name)).c_str()));
}

host::SoapNode& TreeAnswer::header() {
  if (!m_tree->header) {
    const std::string name = std::string(prefix(m_tree->envelope.name())) + "Header";
    m_tree->header.emplace(required(m_tree->envelope.prepend_child(name.c_str())));
  }
  return *m_tree->header;
}

host::SoapNode& TreeAnswer::method() {
  return *m_tree->method;
}

host::SoapNode& TreeAnswer::parameter(std::size_t position) {
  Node& method = *m_tree->method;
  const pugi::xml_node parent = method.element();
  for (const pugi::xml_node& element : parent)
    if (isElement(element) && position-- == 0)
      return method.handedOut(element);
  throw RuntimeError(ErrorNumber::subscriptOutOfRange, kSource);
}

host::SoapNode& TreeAnswer::element(std::size_t position) {
  struct Collector : pugi::xml_tree_walker {
    bool for_each(pugi::xml_node& node) override {
      if (isElement(node))
        elements->push_back(std::make_unique<Node>(node));
      return true;
    }
    std::vector<std::unique_ptr<Node>>* elements = nullptr;
  };
  if (m_tree->elements.empty()) {
    Collector collector;
    collector.elements = &m_tree->elements;
    m_tree->document.traverse(collector);
  }
  return *m_tree->elements.at(position);
}

std::string TreeAnswer::serialise() const {
  if (!m_tree->header || m_tree->header->element().first_child())
    return write(m_tree->document);
  pugi::xml_document withoutHeader;
  const pugi::xml_node envelope = required(withoutHeader.append_copy(m_tree->envelope));
  withoutHeader.first_child().remove_child(soapChild(envelope, "Header"));
  return write(withoutHeader);
}

} // namespace imex::platform
