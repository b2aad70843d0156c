#pragma once

#include "platform/soap/Message.h"

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace imex::platform {

/// An answer as a tree of pugixml. It takes every answer there is, and says what is wrong with the others.
class TreeAnswer : public Message {
 public:
  /// Reads an answer. The errors are those of SoapEnvelope::parse().
  TreeAnswer(std::string_view data, std::string_view encoding);
  ~TreeAnswer() override;
  TreeAnswer(const TreeAnswer&) = delete;
  TreeAnswer& operator=(const TreeAnswer&) = delete;

  void setEncodingStyle(std::string_view uri) override;
  void setMethod(std::string_view name, std::string_view space) override;
  host::SoapNode& header() override;
  host::SoapNode& method() override;
  host::SoapNode& parameter(std::size_t position) override;
  std::string serialise() const override;

  /// The element at this position of the document as it was read, counted from 0 for the envelope.
  host::SoapNode& element(std::size_t position);

 private:
  struct Tree;

  std::unique_ptr<Tree> m_tree;
};

} // namespace imex::platform
