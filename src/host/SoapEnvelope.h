#pragma once

#include "host/HttpTransport.h"
#include "host/SoapNode.h"
#include "runtime/export.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace imex::host {

/// A SOAP 1.1 message: filled and serialised as a request, then filled again from the answer. Its nodes are valid until
/// the next parse().
class IMEX_EXPORT SoapEnvelope {
 public:
  virtual ~SoapEnvelope() = default;

  /// The encoding style of the method element.
  virtual void setEncodingStyle(std::string_view uri) = 0;

  /// The name and the namespace of the method element.
  virtual void setMethod(std::string_view name, std::string_view space) = 0;

  /// The header: its children are the header entries. A header without entries is not serialised.
  virtual SoapNode& header() = 0;

  /// The method element, after parse() the first element of the answer's body: its children are the parameters.
  virtual SoapNode& parameters() = 0;

  /// The message as text, UTF-8 with an XML declaration. Error 5 where it has no method.
  virtual std::string serialise() const = 0;

  /// Posts the message: what serialise() gives goes to the transport. Where its text need not be copied for that, it is
  /// not.
  virtual void post(HttpTransport& transport, std::string_view endpoint) const {
    transport.send(endpoint, serialise());
  }

  /// Replaces the message by an answer. `encoding` names the encoding of `data`; empty means what the data itself
  /// declares. Error 1005 for data that is no SOAP message, 1006 for a SOAP fault (the description is the fault text);
  /// the message is then empty.
  virtual void parse(std::string_view data, std::string_view encoding) = 0;

  /// The same with an answer that the message may keep.
  // NOLINTNEXTLINE(performance-unnecessary-value-param): this default alone does not keep it.
  virtual void take(std::string data, std::string_view encoding) { parse(data, encoding); }

  /// The parameter of the answer at `position`, counted from 0. Error 9 outside.
  virtual SoapNode& parameter(std::size_t position) = 0;
};

} // namespace imex::host
