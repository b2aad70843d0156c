#pragma once

#include "platform/soap/Message.h"
#include "platform/soap/TextBuffer.h"

#include <cstddef>
#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace imex::platform {

/// An element of a request. Its serialised form is written when it is created: one that has no elements inside is
/// nothing but a place in the text of its parent, and becomes a text of its own with the first element inside.
class RequestElement : public host::SoapNode {
 public:
  /// An element with a text of its own. `start` is its start tag without the end: "<name attribute".
  explicit RequestElement(std::string start);
  /// The bytes from `at` on in the text of `parent`.
  RequestElement(RequestElement& parent, std::size_t at, std::size_t size);

  std::string name() const override;
  std::string text() const override;
  std::size_t count() const override;
  host::SoapNode* child(std::string_view localName) override;
  void forEachChild(const std::function<void(host::SoapNode&)>& visit) override;
  host::SoapNode& create(std::string_view name, std::string_view value, std::string_view space, std::string_view type,
                         std::string_view typeSpace) override;

  /// The child at `position`, counted from 0; null outside.
  RequestElement* childAt(std::size_t position);

  /// Replaces the start tag of an element with a text of its own.
  void setStart(std::string start);

  /// Appends the element, with all that is inside, to `parts`. They refer to the element.
  void addParts(std::vector<std::string_view>& parts) const;

 private:
  /// What an element with a text of its own has.
  struct Content {
    /// A child with a text of its own, and where in the parent's text it stands.
    struct Inner {
      std::size_t at;
      RequestElement* element;
    };

    std::string start;
    std::size_t valueSize = 0; ///< the element's own value is at the beginning of its text
    TextBuffer text;
    std::deque<RequestElement> children;
    std::vector<Inner> inner; ///< in order
  };

  bool isEmpty() const { return m_content->text.size() == 0 && m_content->inner.empty(); }
  std::string_view bytes() const { return std::string_view(m_parent->m_content->text).substr(m_at, m_size); }
  Content& grown();
  void leaveParentsText();

  RequestElement* m_parent = nullptr;
  std::size_t m_at = 0;
  std::size_t m_size = 0;
  std::unique_ptr<Content> m_content; ///< null as long as the element is a place in its parent's text
};

/// A request: its text grows with each element, and there is no tree of it besides.
class RequestMessage : public Message {
 public:
  RequestMessage();

  void setEncodingStyle(std::string_view uri) override;
  void setMethod(std::string_view name, std::string_view space) override;
  host::SoapNode& header() override { return m_header; }
  host::SoapNode& method() override { return m_method; }
  host::SoapNode& parameter(std::size_t position) override;
  std::string serialise() const override;
  void post(host::HttpTransport& transport, std::string_view endpoint) const override;

 private:
  void writeMethodStart();
  std::vector<std::string_view> parts() const;

  std::string m_name;
  std::string m_space;
  std::string m_style;
  RequestElement m_header;
  RequestElement m_method;
};

} // namespace imex::platform
