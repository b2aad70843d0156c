#pragma once

#include "runtime/export.h"

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace imex::host {

/// An element of a SOAP message. It belongs to the message that it is part of and lives as long.
class IMEX_EXPORT SoapNode {
 public:
  virtual ~SoapNode() = default;

  /// The local name, without a prefix.
  virtual std::string name() const = 0;

  /// The text directly inside the element, white space kept.
  virtual std::string text() const = 0;

  /// The number of child elements.
  virtual std::size_t count() const = 0;

  /// The first child element of this local name; null where there is none.
  virtual SoapNode* child(std::string_view localName) = 0;

  /// Calls `visit` with each child element, in order. The node, and what is reached through it, is valid during the
  /// call.
  virtual void forEachChild(const std::function<void(SoapNode&)>& visit) = 0;

  /// Appends a child element and returns it. Empty `space`, `type` and `typeSpace` add neither a namespace nor a type
  /// attribute. Error 1008 for a value with characters that XML cannot carry, error 5 for a name that is none; the
  /// element then has no new child.
  virtual SoapNode& create(std::string_view name, std::string_view value, std::string_view space, std::string_view type,
                           std::string_view typeSpace) = 0;
};

} // namespace imex::host
