#pragma once

#include "Reference.h"
#include "host/Application.h"
#include "host/CurrentUser.h"
#include "host/MessageBox.h"
#include "host/Settings.h"
#include "platform/files/DiskFiles.h"
#include "platform/soap/SoapServiceCall.h"
#include "platform/soap/SoapTransportFactory.h"
#include "request/ImExRequest.h"

#include <string>

namespace imex::bench {

/// The host of the benchmarks: the adapters of the programs and no trace log, installed for the life of the object.
/// A box or a failure that a benchmark meets ends the program, because its times would mean nothing.
class BenchHost : host::Settings, host::Application, host::CurrentUser, host::MessageBox {
 public:
  /// `address` is that of the service; empty where none is called.
  explicit BenchHost(std::string address = {});
  ~BenchHost() override;

  /// Fills a request for the import of the reference file.
  static void fill(ImExRequest& request, const Reference& reference);

 private:
  std::string securedAddress() const override { return m_address; }
  std::string unsecuredAddress() const override { return m_address; }
  std::int32_t timeout() const override { return 0; }
  std::string proxyPort() const override { return {}; }
  std::string installationDirectory() const override { return path(); }
  std::string path() const override;
  std::string name() const override { return "Ann Agent"; }
  std::string id() const override { return "agent1"; }
  host::Answer show(std::string_view prompt, int style, std::string_view title) override;

  std::string m_address;
  platform::DiskFiles m_files;
  platform::SoapTransportFactory m_transports;
  platform::SoapServiceCall m_serviceCall;
};

} // namespace imex::bench
