#include "platform/soap/RequestMessage.h"

#include "platform/soap/xmlText.h"
#include "runtime/RuntimeError.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace imex::platform {

namespace {

constexpr std::string_view kEnvelopeStart = R"(<SOAP-ENV:Envelope xmlns:SOAP-ENV=")";
constexpr std::string_view kBodyStart = "<SOAP-ENV:Body>";
constexpr std::string_view kEnd = "</SOAP-ENV:Body></SOAP-ENV:Envelope>";

void requireName(std::string_view name) {
  if (!isXmlName(name))
    throw RuntimeError(ErrorNumber::invalidProcedureCall, kEnvelopeSource);
}

/// Nothing is appended for an empty value.
void appendAttribute(std::string& start, std::string_view name, std::string_view value) {
  if (value.empty())
    return;
  start.append(" ").append(name).append("=\"");
  appendXmlAttribute(start, value);
  start += '"';
}

/// The prefixes are declared on the element itself, so that its children stay without a namespace.
void appendType(std::string& start, std::string_view type, std::string_view typeSpace) {
  if (type.empty())
    return;
  appendAttribute(start, "xmlns:xsi", kSchemaInstanceSpace);
  appendAttribute(start, "xmlns:t", typeSpace);
  appendAttribute(start, "xsi:type", (typeSpace.empty() ? "" : "t:") + std::string(type));
}

/// The start tag of an element without its end.
void appendStart(TextBuffer& text, std::string_view name, std::string_view space, std::string_view type,
                 std::string_view typeSpace) {
  text.append(space.empty() ? "<" : "<n:").append(name);
  if (space.empty() && type.empty())
    return;
  std::string attributes;
  appendAttribute(attributes, "xmlns:n", space);
  appendType(attributes, type, typeSpace);
  text.append(attributes);
}

void appendEscaped(TextBuffer& text, std::string_view value) {
  std::string escaped;
  appendXmlText(escaped, value);
  text.append(escaped);
}

/// The name in a tag, with its prefix.
std::string_view nameIn(std::string_view tag) {
  tag.remove_prefix(1);
  return tag.substr(0, tag.find_first_of(" />"));
}

/// The value of an element that was written here: behind the end of its start tag. Quotes in attributes are escaped,
/// but ">" is not.
struct Parts {
  std::string_view start;
  std::string_view value;
};

Parts partsOf(std::string_view bytes) {
  bool isQuoted = false;
  std::size_t end = 0;
  for (; isQuoted || bytes[end] != '>'; ++end)
    isQuoted = isQuoted != (bytes[end] == '"');
  if (bytes[end - 1] == '/')
    return {bytes.substr(0, end - 1), {}};
  return {bytes.substr(0, end), bytes.substr(end + 1, bytes.rfind('<') - end - 1)};
}

} // namespace

RequestElement::RequestElement(std::string start) : m_content(std::make_unique<Content>()) {
  m_content->start = std::move(start);
}

RequestElement::RequestElement(RequestElement& parent, std::size_t at, std::size_t size)
    : m_parent(&parent), m_at(at), m_size(size) {}

std::string RequestElement::name() const {
  const std::string_view tag = m_content ? std::string_view(m_content->start) : bytes();
  return std::string(localName(nameIn(tag)));
}

std::string RequestElement::text() const {
  const std::string_view escaped =
      m_content ? std::string_view(m_content->text).substr(0, m_content->valueSize) : partsOf(bytes()).value;
  return resolvedXmlText(escaped);
}

std::size_t RequestElement::count() const {
  return m_content ? m_content->children.size() : 0;
}

RequestElement* RequestElement::childAt(std::size_t position) {
  return position < count() ? &m_content->children[position] : nullptr;
}

host::SoapNode* RequestElement::child(std::string_view localName) {
  if (!m_content)
    return nullptr;
  const auto found = std::find_if(m_content->children.begin(), m_content->children.end(),
                                  [&](const RequestElement& element) { return element.name() == localName; });
  return found == m_content->children.end() ? nullptr : &*found;
}

void RequestElement::forEachChild(const std::function<void(host::SoapNode&)>& visit) {
  for (std::size_t i = 0; i < count(); ++i)
    visit(m_content->children[i]);
}

/// Gives the element a text of its own.
RequestElement::Content& RequestElement::grown() {
  if (m_content)
    return *m_content;
  const Parts parts = partsOf(bytes());
  auto content = std::make_unique<Content>();
  content->start = parts.start;
  content->text.append(parts.value);
  content->valueSize = parts.value.size();
  leaveParentsText();
  m_content = std::move(content);
  return *m_content;
}

/// Takes the element's bytes out of the parent's text and puts a mark in their place.
void RequestElement::leaveParentsText() {
  Content& parent = *m_parent->m_content;
  const auto behind = std::upper_bound(parent.inner.begin(), parent.inner.end(), m_at,
                                       [](std::size_t at, const Content::Inner& inner) { return at < inner.at; });
  const auto next = parent.inner.insert(behind, {m_at, this}) + 1;
  std::for_each(next, parent.inner.end(), [this](Content::Inner& inner) { inner.at -= m_size; });
  for (auto later = parent.children.rbegin(); &*later != this; ++later)
    later->m_at -= later->m_content ? 0 : m_size;
  parent.text.erase(m_at, m_size);
}

host::SoapNode& RequestElement::create(std::string_view name, std::string_view value, std::string_view space,
                                       std::string_view type, std::string_view typeSpace) {
  requireName(name);
  const bool isPlain = isPlainXmlText(value);
  if (!isPlain)
    requireXmlText(value, name);
  requireXmlText(space, name);
  requireXmlText(type, name);
  requireXmlText(typeSpace, name);
  Content& content = grown();
  const std::size_t begin = content.text.size();
  appendStart(content.text, name, space, type, typeSpace);
  if (value.empty()) {
    content.text.append("/>");
  } else {
    content.text.append(">");
    if (isPlain)
      content.text.append(value);
    else
      appendEscaped(content.text, value);
    content.text.append(space.empty() ? "</" : "</n:").append(name).append(">");
  }
  return content.children.emplace_back(*this, begin, content.text.size() - begin);
}

void RequestElement::setStart(std::string start) {
  m_content->start = std::move(start);
}

void RequestElement::addParts(std::vector<std::string_view>& parts) const {
  const std::string_view start = m_content->start;
  parts.push_back(start);
  if (isEmpty()) {
    parts.emplace_back("/>");
    return;
  }
  parts.emplace_back(">");
  const std::string_view own = m_content->text;
  std::size_t written = 0;
  for (const Content::Inner& inner : m_content->inner) {
    parts.push_back(own.substr(written, inner.at - written));
    inner.element->addParts(parts);
    written = inner.at;
  }
  parts.push_back(own.substr(written));
  parts.insert(parts.end(), {"</", nameIn(start), ">"});
}

RequestMessage::RequestMessage() : m_header("<SOAP-ENV:Header"), m_method("<") {}

void RequestMessage::writeMethodStart() {
  std::string start = (m_space.empty() ? "<" : "<ns1:") + m_name;
  appendAttribute(start, "xmlns:ns1", m_space);
  appendAttribute(start, "SOAP-ENV:encodingStyle", m_style);
  m_method.setStart(std::move(start));
}

void RequestMessage::setEncodingStyle(std::string_view uri) {
  requireXmlText(uri, "SOAP-ENV:encodingStyle");
  m_style = uri;
  writeMethodStart();
}

void RequestMessage::setMethod(std::string_view name, std::string_view space) {
  requireName(name);
  requireXmlText(space, name);
  m_name = name;
  m_space = space;
  writeMethodStart();
}

host::SoapNode& RequestMessage::parameter(std::size_t position) {
  if (RequestElement* element = m_method.childAt(position))
    return *element;
  throw RuntimeError(ErrorNumber::subscriptOutOfRange, kEnvelopeSource);
}

std::vector<std::string_view> RequestMessage::parts() const {
  if (m_name.empty())
    throw RuntimeError(ErrorNumber::invalidProcedureCall, kEnvelopeSource);
  std::vector<std::string_view> parts = {kXmlDeclaration, kEnvelopeStart, kSoapSpace, "\">"};
  if (m_header.count() != 0)
    m_header.addParts(parts);
  parts.push_back(kBodyStart);
  m_method.addParts(parts);
  parts.push_back(kEnd);
  return parts;
}

std::string RequestMessage::serialise() const {
  const std::vector<std::string_view> parts = this->parts();
  std::string text;
  text.reserve(std::accumulate(parts.begin(), parts.end(), std::size_t{0},
                               [](std::size_t size, std::string_view part) { return size + part.size(); }));
  for (const std::string_view part : parts)
    text += part;
  return text;
}

void RequestMessage::post(host::HttpTransport& transport, std::string_view endpoint) const {
  transport.sendParts(endpoint, parts());
}

} // namespace imex::platform
