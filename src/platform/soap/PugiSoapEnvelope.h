#pragma once

#include "host/SoapEnvelope.h"
#include "runtime/export.h"

#include <memory>
#include <string_view>

namespace imex::platform {

class Message;

/// A SOAP message: a request as the text that it becomes, an answer as its text with an index, or, where that text is
/// of an unusual kind, as a tree of pugixml.
///
/// The serialised form is one line, without white space between elements: an XML declaration (version 1.0, UTF-8), the
/// envelope with the prefix SOAP-ENV, its header where that has an entry, its body, and in it the method element with
/// the prefix ns1, its namespace and its encoding style. A carriage return inside a text is written as "&#13;", so that
/// a text arrives as it was.
///
/// An answer is refused with error 1005 where it is empty, not XML, of another shape than a SOAP 1.1 message with an
/// element in its body, or nested deeper than 256 elements; where it has a document type declaration; and where its
/// bytes are not of its encoding. UTF-8, UTF-16, ISO-8859-1 and Windows-1252 are understood. No entity of a document's
/// own is ever expanded and nothing is loaded from elsewhere.
class IMEX_EXPORT PugiSoapEnvelope : public host::SoapEnvelope {
 public:
  PugiSoapEnvelope();
  ~PugiSoapEnvelope() override;
  PugiSoapEnvelope(const PugiSoapEnvelope&) = delete;
  PugiSoapEnvelope& operator=(const PugiSoapEnvelope&) = delete;

  void setEncodingStyle(std::string_view uri) override;
  void setMethod(std::string_view name, std::string_view space) override;
  host::SoapNode& header() override;
  host::SoapNode& parameters() override;
  std::string serialise() const override;
  void post(host::HttpTransport& transport, std::string_view endpoint) const override;
  void parse(std::string_view data, std::string_view encoding) override;
  void take(std::string data, std::string_view encoding) override;
  host::SoapNode& parameter(std::size_t position) override;

 private:
  std::unique_ptr<Message> m_message;
};

/// Whether `data` is a SOAP message that carries a fault. `encoding` is that of parse().
IMEX_EXPORT bool isSoapFault(std::string_view data, std::string_view encoding);

} // namespace imex::platform
