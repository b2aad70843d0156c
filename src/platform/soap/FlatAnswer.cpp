#include "platform/soap/FlatAnswer.h"

#include "platform/soap/xmlText.h"
#include "runtime/RuntimeError.h"
#include "runtime/bytes.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <utility>

namespace imex::platform {

namespace {

constexpr std::string_view kBlanks = " \t\r\n";

constexpr bool isBlank(char c) {
  return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

constexpr bool isNameStart(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_';
}

constexpr bool isNamePart(char c) {
  return isNameStart(c) || (c >= '0' && c <= '9') || c == '-' || c == '.' || c == ':';
}

/// Whether all bytes are the same, compared by words: the last word may take some bytes once more. `size` is at least
/// that of a word.
template <class Word>
bool areSameWords(const char* a, const char* b, std::size_t size) {
  const auto at = [](const char* place) {
    Word word;
    std::memcpy(&word, place, sizeof word);
    return word;
  };
  const std::size_t last = size - sizeof(Word);
  for (std::size_t i = 0; i < last; i += sizeof(Word)) {
    if (at(a + i) != at(b + i))
      return false;
  }
  return at(a + last) == at(b + last);
}

/// What std::memcmp() would say, without a call for the few bytes of a tag.
bool areSame(const char* a, const char* b, std::size_t size) {
  if (size >= sizeof(std::uint64_t))
    return areSameWords<std::uint64_t>(a, b, size);
  if (size >= sizeof(std::uint32_t))
    return areSameWords<std::uint32_t>(a, b, size);
  return std::equal(a, a + size, b);
}

/// The size of the character or of the reference at a place of the text; 0 where it is none that XML has.
std::size_t sizeAt(std::string_view text, std::size_t at) {
  return text[at] == '&' ? referenceSize(text.substr(at)) : xmlCharacterSize(text, at);
}

/// Whether the text has nothing but characters and references of XML.
bool isOfXml(std::string_view text) {
  const auto needsALook = [](auto c) { return isControlOrNonAscii(c) | (c == '&'); };
  for (std::size_t at = findByte(text, needsALook); at < text.size(); at = findByte(text, needsALook, at)) {
    const std::size_t size = sizeAt(text, at);
    if (size == 0)
      return false;
    at += size;
  }
  return true;
}

} // namespace

// --- Reading --------------------------------------------------------------------------------------------------------

/// Goes through the text once and makes the entries. Each step is false where the text is not of the plain kind.
///
/// The same tags come again and again, and mostly in the same order. So each tag remembers which one came behind it the
/// last time: where that one stands there again, byte for byte, there is nothing left to find out about it.
class FlatAnswer::Scanner {
 public:
  explicit Scanner(FlatAnswer& answer)
      : m_answer(answer), m_begin(answer.m_text.data()), m_at(m_begin), m_end(m_begin + answer.m_text.size()) {}

  bool scan() {
    if (!skipDeclaration())
      return false;
    m_known.reserve(kMostKnown);
    m_answer.m_elements.reserve(m_answer.m_text.size() / kUsualSize);
    do {
      if (!tag())
        return false;
    } while (!m_open.empty() && skipText());
    if (!m_open.empty())
      return false;
    skipBlanks();
    return m_at == m_end;
  }

 private:
  static constexpr std::size_t kMostKnown = 256;
  static constexpr std::size_t kUsualSize = 48; ///< of an element with its text: most answers have no more elements
  static_assert(kMostKnown <= kDeepestLevel, "each level has a tag of its own, so none is too deep");
  static constexpr std::uint16_t kNoTag = std::numeric_limits<std::uint16_t>::max();

  enum class Kind { start, empty, end };

  /// A tag that was seen.
  struct Known {
    std::string_view text;
    Kind kind;
    std::uint16_t tag; ///< the start tag, for an end tag one that it ends
    std::string_view name;
    std::size_t depth;     ///< where it was seen: the same tag has other neighbours elsewhere
    Known* next = nullptr; ///< the one that came behind it
  };

  std::size_t rest() const { return static_cast<std::size_t>(m_end - m_at); }
  std::uint32_t offset(const char* at) const { return static_cast<std::uint32_t>(at - m_begin); }
  bool isAt(char c) const { return m_at != m_end && *m_at == c; }
  bool isAt(std::string_view text) const { return rest() >= text.size() && areSame(m_at, text.data(), text.size()); }
  void skipBlanks() {
    while (m_at != m_end && isBlank(*m_at))
      ++m_at;
  }

  bool skipDeclaration() {
    const std::string_view text(m_at, rest());
    if (text.starts_with("<?xml ")) {
      const std::size_t end = text.find("?>");
      if (end == std::string_view::npos || !isOfXml(text.substr(0, end)))
        return false;
      m_at += end + 2;
    }
    skipBlanks();
    return isAt('<');
  }

  /// Goes on to the next tag, and notes whether the text before it stands for itself.
  bool skipText() {
    if (isAt('<')) // as between most tags
      return true;
    const auto isToBeLookedAt = [](auto c) {
      return (c == '<') | (c == '&') | (isControlOrNonAscii(c) & (c != '\t') & (c != '\n'));
    };
    const std::string_view text(m_at, rest());
    std::size_t at = findByte(text, isToBeLookedAt);
    for (; at < text.size() && text[at] != '<'; at = findByte(text, isToBeLookedAt, at)) {
      const std::size_t size = sizeAt(text, at);
      if (size == 0)
        return false;
      m_isLiteral = m_isLiteral && text[at] != '&' && text[at] != '\r';
      at += size;
    }
    m_at += at;
    return m_at != m_end;
  }

  /// Takes the tag at this place.
  bool tag() {
    Known* found = m_last == nullptr ? nullptr : m_last->next;
    if (found == nullptr || !isAt(found->text)) {
      found = known();
      if (found == nullptr)
        return false;
      if (m_last != nullptr)
        m_last->next = found;
    }
    m_last = found;
    return take(*found);
  }

  bool take(const Known& known) {
    const char* const place = m_at;
    m_at += known.text.size();
    if (known.kind == Kind::end)
      return close(known, place);
    open(known);
    return true;
  }

  void open(const Known& known) {
    const auto element = static_cast<Index>(m_answer.m_elements.size());
    m_answer.m_elements.push_back({offset(m_at), offset(m_at), element + 1, known.tag, true});
    m_isLiteral = true;
    if (known.kind == Kind::start)
      m_open.push_back(element);
  }

  bool close(const Known& known, const char* place) {
    Entry& entry = m_answer.m_elements[m_open.back()];
    if (entry.tag != known.tag && m_answer.m_tags[entry.tag].name != known.name)
      return false;
    entry.end = offset(place);
    entry.next = static_cast<Index>(m_answer.m_elements.size());
    entry.isLiteral = m_isLiteral;
    m_open.pop_back();
    return true;
  }

  /// The tag at this place among those that were seen, with those added that were not; null where it is no good tag, or
  /// one too many.
  Known* known() {
    const char* const place = m_at;
    for (Known& known : m_known) {
      if (known.depth == m_open.size() && isAt(known.text))
        return &known;
    }
    const bool isEnd = rest() > 1 && place[1] == '/';
    std::string_view name;
    const bool isGood = isEnd ? readEndTag(name) : readStartTag(name);
    const std::string_view text(place, static_cast<std::size_t>(m_at - place));
    m_at = place;
    if (!isGood || !isOfXml(text) || m_known.size() == kMostKnown || (isEnd && m_open.empty()))
      return nullptr;
    m_known.push_back({text,
                       isEnd                  ? Kind::end
                       : text.ends_with("/>") ? Kind::empty
                                              : Kind::start,
                       0, name, m_open.size()});
    m_known.back().tag = isEnd ? openTag(name) : newTag(text, name);
    return &m_known.back();
  }

  /// The start tag of the element that is open, where it has this name.
  std::uint16_t openTag(std::string_view name) const {
    const std::uint16_t tag = m_answer.m_elements[m_open.back()].tag;
    return m_answer.m_tags[tag].name == name ? tag : kNoTag;
  }

  std::uint16_t newTag(std::string_view text, std::string_view name) {
    m_answer.m_tags.push_back({text, name, localName(name)});
    return static_cast<std::uint16_t>(m_answer.m_tags.size() - 1);
  }

  bool skipName() {
    if (m_at == m_end || !isNameStart(*m_at))
      return false;
    while (m_at != m_end && isNamePart(*m_at))
      ++m_at;
    return m_at != m_end;
  }

  bool readEndTag(std::string_view& name) {
    m_at += 2;
    const char* const begin = m_at;
    if (!skipName() || *m_at != '>')
      return false;
    name = {begin, static_cast<std::size_t>(m_at - begin)};
    ++m_at;
    return true;
  }

  bool readStartTag(std::string_view& name) {
    const char* const begin = ++m_at;
    if (!skipName())
      return false;
    name = {begin, static_cast<std::size_t>(m_at - begin)};
    if (!attributes())
      return false;
    m_at += *m_at == '/' ? 2 : 1;
    return true;
  }

  /// Goes to the end of the start tag, which is ">" or "/>".
  bool attributes() {
    for (;;) {
      const char* const before = m_at;
      skipBlanks();
      if (isAt('>'))
        return true;
      if (isAt('/'))
        return rest() > 1 && m_at[1] == '>';
      if (m_at == before || !attribute())
        return false;
    }
  }

  bool attribute() {
    if (!skipName())
      return false;
    skipBlanks();
    if (!isAt('='))
      return false;
    ++m_at;
    skipBlanks();
    if (!isAt('"') && !isAt('\''))
      return false;
    const char* const open = m_at;
    const void* const end = std::memchr(m_at + 1, *open, rest() - 1);
    if (end == nullptr)
      return false;
    const std::string_view value(open + 1, static_cast<std::size_t>(static_cast<const char*>(end) - open) - 1);
    m_at = static_cast<const char*>(end) + 1;
    return value.find_first_of("<&") == std::string_view::npos;
  }

  FlatAnswer& m_answer;
  const char* m_begin;
  const char* m_at;
  const char* m_end;
  bool m_isLiteral = true;    ///< whether the text since the last start tag stands for itself
  std::vector<Known> m_known; ///< never moved: there is room for all from the beginning
  Known* m_last = nullptr;
  std::vector<Index> m_open;
};

std::unique_ptr<FlatAnswer> FlatAnswer::read(std::string& data, std::string_view encoding) {
  if (data.size() >= std::numeric_limits<std::uint32_t>::max() || !isInUtf8(data, encoding))
    return nullptr;
  std::unique_ptr<FlatAnswer> answer(new FlatAnswer(std::move(data)));
  if (Scanner(*answer).scan() && answer->findMessage())
    return answer;
  data = std::move(answer->m_text);
  return nullptr;
}

// --- The elements ---------------------------------------------------------------------------------------------------

FlatAnswer::Index FlatAnswer::childNamed(Index element, std::string_view name) const {
  const Index last = end(element);
  for (Index child = firstChild(element); child != last; child = end(child)) {
    const std::string_view local = tagOf(child).local;
    if (local.size() == name.size() && areSame(local.data(), name.data(), name.size()))
      return child;
  }
  return 0;
}

/// The text directly inside: what is before, between and behind the children.
std::string FlatAnswer::textOf(Index element) const {
  const std::string_view text = m_text;
  const Entry& entry = m_elements[element];
  const std::string_view content = text.substr(entry.content, entry.end - entry.content);
  if (entry.next == element + 1)
    return entry.isLiteral ? std::string(content) : resolvedXmlText(content);
  std::string result;
  std::size_t begin = entry.content;
  for (Index child = firstChild(element); child != entry.next; child = end(child)) {
    result += resolvedXmlText(text.substr(begin, placeOf(child) - begin));
    const Entry& inner = m_elements[child];
    const bool hasEndTag = !tagOf(child).text.ends_with("/>");
    begin = hasEndTag ? text.find('>', inner.end) + 1 : inner.content;
  }
  return result + resolvedXmlText(text.substr(begin, entry.end - begin));
}

namespace {

/// The value of an attribute of a start tag; null where there is none.
std::string_view attributeIn(std::string_view tag, std::string_view name) {
  for (std::size_t quote = tag.find_first_of("\"'"); quote != std::string_view::npos;) {
    const std::size_t close = tag.find(tag[quote], quote + 1);
    std::string_view key = tag.substr(0, tag.rfind('=', quote));
    key = key.substr(0, key.find_last_not_of(kBlanks) + 1);
    key.remove_prefix(key.find_last_of(kBlanks) + 1);
    if (key == name)
      return tag.substr(quote + 1, close - quote - 1);
    tag.remove_prefix(close + 1);
    quote = tag.find_first_of("\"'");
  }
  return {};
}

bool isDeclaring(std::string_view tag, std::string_view name) {
  return attributeIn(tag, name).data() != nullptr;
}

} // namespace

/// The namespace of the last element of a path of elements, each inside the one before; empty where it has none.
std::string_view FlatAnswer::spaceOf(const std::vector<Index>& path) const {
  const std::string_view own = prefix(tagOf(path.back()).name);
  const std::string declaration = own.empty() ? "xmlns" : "xmlns:" + std::string(own.substr(0, own.size() - 1));
  for (auto element = path.rbegin(); element != path.rend(); ++element) {
    if (isDeclaring(tagOf(*element).text, declaration))
      return attributeIn(tagOf(*element).text, declaration);
  }
  return {};
}

/// Finds the parts of a message. False where there is no envelope, no body, nothing in it, or a fault.
bool FlatAnswer::findMessage() {
  constexpr Index kEnvelope = 0;
  const auto isSoap = [this](const std::vector<Index>& path, std::string_view name) {
    return tagOf(path.back()).local == name && spaceOf(path) == kSoapSpace;
  };
  if (!isSoap({kEnvelope}, "Envelope"))
    return false;
  Index body = 0;
  for (Index child = firstChild(kEnvelope); child != end(kEnvelope); child = end(child)) {
    if (m_header == 0 && isSoap({kEnvelope, child}, "Header"))
      m_header = child;
    if (body == 0 && isSoap({kEnvelope, child}, "Body"))
      body = child;
  }
  if (body == 0 || firstChild(body) == end(body))
    return false;
  m_method = firstChild(body);
  for (Index child = m_method; child != end(body); child = end(child)) {
    if (isSoap({kEnvelope, body, child}, "Fault"))
      return false;
  }
  return true;
}

// --- The nodes that are handed out ----------------------------------------------------------------------------------

/// Nodes for the elements that somebody looks at, each element one.
class FlatAnswer::Nodes {
 public:
  explicit Nodes(FlatAnswer& answer) : m_answer(answer) {}

  Node& of(Index element);

  /// Forgets what was handed out and keeps its memory.
  void clear() { m_used.clear(); }

 private:
  FlatAnswer& m_answer;
  std::vector<std::unique_ptr<Node>> m_nodes;
  std::vector<Index> m_used; ///< the elements of the first nodes; the others are left from before
};

class FlatAnswer::Node : public host::SoapNode {
 public:
  /// The nodes of its children come from `nodes`.
  Node(FlatAnswer& answer, Nodes& nodes, Index element) : m_answer(&answer), m_nodes(&nodes), m_element(element) {}

  std::string name() const override {
    return changed() != nullptr ? changed()->name() : std::string(m_answer->tagOf(m_element).local);
  }
  std::string text() const override { return changed() != nullptr ? changed()->text() : m_answer->textOf(m_element); }
  std::size_t count() const override;
  host::SoapNode* child(std::string_view localName) override;
  void forEachChild(const std::function<void(host::SoapNode&)>& visit) override;
  host::SoapNode& create(std::string_view name, std::string_view value, std::string_view space, std::string_view type,
                         std::string_view typeSpace) override {
    return m_answer->tree().element(m_element).create(name, value, space, type, typeSpace);
  }

 private:
  /// The element in the tree; null as long as nothing was changed.
  host::SoapNode* changed() const { return m_answer->m_tree ? &m_answer->m_tree->element(m_element) : nullptr; }

  FlatAnswer* m_answer;
  Nodes* m_nodes;
  Index m_element;
};

FlatAnswer::Node& FlatAnswer::Nodes::of(Index element) {
  const auto position = static_cast<std::size_t>(std::find(m_used.begin(), m_used.end(), element) - m_used.begin());
  if (position < m_used.size())
    return *m_nodes[position];
  if (position == m_nodes.size())
    m_nodes.push_back(std::make_unique<Node>(m_answer, *this, element));
  else
    *m_nodes[position] = Node(m_answer, *this, element);
  m_used.push_back(element);
  return *m_nodes[position];
}

std::size_t FlatAnswer::Node::count() const {
  if (const host::SoapNode* node = changed())
    return node->count();
  std::size_t count = 0;
  for (Index child = m_answer->firstChild(m_element); child != m_answer->end(m_element); child = m_answer->end(child))
    ++count;
  return count;
}

host::SoapNode* FlatAnswer::Node::child(std::string_view localName) {
  if (host::SoapNode* node = changed())
    return node->child(localName);
  const Index found = m_answer->childNamed(m_element, localName);
  return found == 0 ? nullptr : &m_nodes->of(found);
}

void FlatAnswer::Node::forEachChild(const std::function<void(host::SoapNode&)>& visit) {
  if (host::SoapNode* node = changed())
    return node->forEachChild(visit);
  // Nodes for the visit only: an answer may have a great many elements, each of them seen once.
  Nodes inside(*m_answer);
  const Index end = m_answer->end(m_element);
  for (Index child = m_answer->firstChild(m_element); child != end; child = m_answer->end(child)) {
    inside.clear();
    Node node(*m_answer, inside, child);
    visit(node);
  }
}

// --- The message ----------------------------------------------------------------------------------------------------

FlatAnswer::FlatAnswer(std::string text) : m_text(std::move(text)), m_nodes(std::make_unique<Nodes>(*this)) {}

FlatAnswer::~FlatAnswer() = default;

TreeAnswer& FlatAnswer::tree() {
  if (!m_tree)
    m_tree = std::make_unique<TreeAnswer>(m_text, kUtf8);
  return *m_tree;
}

host::SoapNode& FlatAnswer::header() {
  if (m_header == 0)
    return tree().header();
  return m_nodes->of(m_header);
}

host::SoapNode& FlatAnswer::method() {
  return m_nodes->of(m_method);
}

host::SoapNode& FlatAnswer::parameter(std::size_t position) {
  if (m_tree)
    return m_tree->parameter(position);
  for (Index child = firstChild(m_method); child != end(m_method); child = end(child)) {
    if (position-- == 0)
      return m_nodes->of(child);
  }
  throw RuntimeError(ErrorNumber::subscriptOutOfRange, kEnvelopeSource);
}

} // namespace imex::platform
