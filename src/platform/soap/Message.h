#pragma once

#include "host/HttpTransport.h"
#include "host/SoapNode.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace imex::platform {

/// One message, whole: a request that is being filled, or an answer. The functions are those of host::SoapEnvelope.
class Message {
 public:
  virtual ~Message() = default;

  virtual void setEncodingStyle(std::string_view uri) = 0;
  virtual void setMethod(std::string_view name, std::string_view space) = 0;
  virtual host::SoapNode& header() = 0;
  virtual host::SoapNode& method() = 0;
  virtual host::SoapNode& parameter(std::size_t position) = 0;
  virtual std::string serialise() const = 0;
  virtual void post(host::HttpTransport& transport, std::string_view endpoint) const {
    transport.send(endpoint, serialise());
  }
};

inline constexpr const char* kEnvelopeSource = "PugiSoapEnvelope"; ///< the source of the errors of all messages
inline constexpr const char* kSoapSpace = "http://schemas.xmlsoap.org/soap/envelope/";
inline constexpr const char* kSchemaInstanceSpace = "http://www.w3.org/2001/XMLSchema-instance";
inline constexpr std::string_view kXmlDeclaration = R"(<?xml version="1.0" encoding="UTF-8"?>)";
inline constexpr int kDeepestLevel = 256;

/// A name without its prefix.
constexpr std::string_view localName(std::string_view name) {
  return name.substr(name.find(':') + 1); // npos + 1 is 0
}

/// The prefix of a name with its colon; empty where there is none.
constexpr std::string_view prefix(std::string_view name) {
  return name.substr(0, name.find(':') + 1);
}

} // namespace imex::platform
