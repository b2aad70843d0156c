#pragma once

#include "platform/soap/Message.h"
#include "platform/soap/TreeAnswer.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace imex::platform {

/// An answer as the service writes it, read in one pass: its text, and one small entry for each element. It has no
/// object for an element that nobody looks at.
///
/// It takes only what needs no judgement: a SOAP 1.1 answer in UTF-8 of elements, attributes and text. Comments,
/// CDATA, processing instructions, names beyond ASCII, faults and everything that is wrong are for TreeAnswer. An
/// answer that is changed or serialised becomes a TreeAnswer too; its nodes stay valid.
class FlatAnswer : public Message {
 public:
  /// Reads an answer and keeps its text; null where it is for TreeAnswer, and `data` is then as it was.
  static std::unique_ptr<FlatAnswer> read(std::string& data, std::string_view encoding);
  ~FlatAnswer() override;
  FlatAnswer(const FlatAnswer&) = delete;
  FlatAnswer& operator=(const FlatAnswer&) = delete;

  void setEncodingStyle(std::string_view uri) override { tree().setEncodingStyle(uri); }
  void setMethod(std::string_view name, std::string_view space) override { tree().setMethod(name, space); }
  host::SoapNode& header() override;
  host::SoapNode& method() override;
  host::SoapNode& parameter(std::size_t position) override;
  std::string serialise() const override {
    return m_tree ? m_tree->serialise() : TreeAnswer(m_text, kUtf8).serialise();
  }

 private:
  class Node;
  class Nodes;
  class Scanner;

  static constexpr std::string_view kUtf8 = "UTF-8";

  using Index = std::uint32_t; ///< the position of an element in the document

  /// An element. Its children follow it directly, and `next` is behind all that is inside it.
  struct Entry {
    std::uint32_t content; ///< where the text behind its start tag begins
    std::uint32_t end;     ///< where its end tag begins
    Index next;
    std::uint16_t tag; ///< the position of its start tag in m_tags
    bool isLiteral;    ///< without elements inside: whether its text stands for itself
  };

  /// A start tag that occurs in the text, at its first place there. An answer has few that differ.
  struct Tag {
    std::string_view text; ///< from "<" to ">"
    std::string_view name; ///< with its prefix
    std::string_view local;
  };

  explicit FlatAnswer(std::string text);

  const Tag& tagOf(Index element) const { return m_tags[m_elements[element].tag]; }
  std::size_t placeOf(Index element) const { return m_elements[element].content - tagOf(element).text.size(); }
  std::string_view spaceOf(const std::vector<Index>& path) const;
  bool findMessage();
  Index firstChild(Index element) const { return element + 1; }
  Index end(Index element) const { return m_elements[element].next; }
  Index childNamed(Index element, std::string_view name) const;
  std::string textOf(Index element) const;
  TreeAnswer& tree();

  std::string m_text;
  std::vector<Tag> m_tags;
  std::vector<Entry> m_elements;
  Index m_header = 0; ///< 0 where there is none
  Index m_method = 0;
  std::unique_ptr<Nodes> m_nodes;     ///< those that live as long as the message
  std::unique_ptr<TreeAnswer> m_tree; ///< once something was changed
};

} // namespace imex::platform
