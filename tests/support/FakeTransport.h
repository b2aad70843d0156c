#pragma once

#include "host/TransportFactory.h"
#include "support/TestHost.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace imex::test {

/// Hands out transports and envelopes that write every call into one list, in order, and do what the test tells them.
/// The list has, each with its arguments behind the name:
///
///   createTransport, createEnvelope
///   setEncodingStyle, setMethod, serialise, parse, parameter      of the envelope
///   create                                                        of any element of the envelope, with its name
///   SetProxy, NoProxy, Timeout, SOAPAction, send, Receive         of the transport; send with the address alone
class FakeTransportFactory : public host::TransportFactory {
 public:
  std::unique_ptr<host::HttpTransport> createTransport() override;
  std::unique_ptr<host::SoapEnvelope> createEnvelope() override;

  /// Keeps a call and then runs `before` for it.
  void keep(std::string_view call, const std::vector<std::string>& arguments = {});

  /// Makes the call of this name fail with `error`: "send", "create LINE".
  void failAt(std::string_view call, RuntimeError error);

  /// Whether a call of this name was made.
  bool wasCalled(std::string_view call) const;

  std::vector<std::string> calls;
  std::function<void(std::string_view call)> before = [](auto) {}; ///< may throw what the call fails with
  std::vector<std::string> posted;                                 ///< the texts given to send
  std::string received = "<answer/>";                              ///< what Receive gives
  std::shared_ptr<host::SoapNode> result; ///< the first parameter of a parsed answer; null for an answer without one
};

/// The text that a FakeTransportFactory's envelope serialises to: its header and its method element.
std::string envelopeText(std::string_view headerEntries, std::string_view parameters);

} // namespace imex::test
