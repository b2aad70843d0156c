#include "BenchHost.h"

#include "host/Services.h"
#include "module/ImExModule.h"

#include <filesystem>
#include <stdexcept>
#include <utility>

namespace imex::bench {

BenchHost::BenchHost(std::string address) : m_address(std::move(address)), m_serviceCall(m_transports, *this) {
  host::Services services;
  services.application = this;
  services.settings = this;
  services.currentUser = this;
  services.messageBox = this;
  services.files = &m_files;
  services.transportFactory = &m_transports;
  services.serviceCall = &m_serviceCall;
  host::install(std::move(services));
  const std::filesystem::path before = std::filesystem::current_path();
  ImExModule::initialize(); // changes the current directory
  std::filesystem::current_path(before);
}

BenchHost::~BenchHost() {
  host::install({});
}

std::string BenchHost::path() const {
  return IMEX_SOURCE_DIR "/share";
}

host::Answer BenchHost::show(std::string_view prompt, int /*style*/, std::string_view /*title*/) {
  throw std::logic_error("a box: " + std::string(prompt));
}

void BenchHost::fill(ImExRequest& request, const Reference& reference) {
  request.ImportExport("IMPORT");
  request.DataOrigin("AGENT");
  request.DataType("CUSTOMER");
  request.Delimiter("TAB");
  request.Schedule("INSTANT");
  request.CheckedFileName(reference.path);
  request.Directory(Reference::folder());
  request.SerializationFailed.connect([](const std::string& message) { throw std::logic_error(message); });
}

} // namespace imex::bench
