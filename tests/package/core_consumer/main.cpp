// Checks a file of quote line items without a window and without a service: core_consumer APPLICATION-DIRECTORY FILE

#include "host/Application.h"
#include "host/Services.h"
#include "module/ImExModule.h"
#include "platform/files/DiskFiles.h"
#include "records/ImportQuoteLIneItemBean.h"
#include "request/ImExRequest.h"

#include <iostream>

namespace {

class Host : public imex::host::Application {
 public:
  explicit Host(std::string directory) : m_directory(std::move(directory)) {}
  std::string path() const override { return m_directory; }

 private:
  std::string m_directory;
};

} // namespace

int main(int argc, char** argv) {
  if (argc != 3)
    return 64;
  Host host(argv[1]);
  imex::platform::DiskFiles files;
  imex::host::Services services;
  services.application = &host;
  services.files = &files;
  imex::host::install(services);
  try {
    imex::ImExModule::initialize();
    imex::ImExRequest request;
    request.DataType("QUOTELINEITEM");
    request.DataOrigin("AGENT");
    request.Delimiter("TAB");
    request.CheckedFileName(argv[2]);
    const auto items = request.serializeQuoteLineItemFile();
    std::cout << items->count() << " quote line items\n";
    return 0;
  } catch (const imex::RuntimeError& error) { // its type is the library's
    std::cerr << error.number() << ' ' << error.description() << '\n';
    return 1;
  }
}
