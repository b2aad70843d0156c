// A host without a window: core_consumer APPLICATION-DIRECTORY. It reads the catalogue with services of its own, judges
// lines, and catches what the library throws.

#include "host/Application.h"
#include "host/MessageBox.h"
#include "host/Services.h"
#include "module/ImExModule.h"
#include "module/validators.h"
#include "platform/clock/SystemClock.h"
#include "platform/config/IniFile.h"
#include "platform/files/DiskFiles.h"
#include "request/ImExRequest.h"

#include <iostream>
#include <string>

namespace {

using namespace imex;

int failures = 0;

void expect(bool isTrue, const char* what) {
  if (isTrue)
    return;
  std::cerr << "not so: " << what << '\n';
  ++failures;
}

/// The number of the error that `action` throws, across the border of the library; 0 for none.
template <class Action>
std::int32_t errorOf(Action&& action) {
  try {
    action();
  } catch (const RuntimeError& error) {
    return error.number();
  }
  return 0;
}

class Directory : public host::Application {
 public:
  explicit Directory(std::string path) : m_path(std::move(path)) {}
  std::string path() const override { return m_path; }

 private:
  std::string m_path;
};

class CountingBox : public host::MessageBox {
 public:
  host::Answer show(std::string_view prompt, int, std::string_view) override {
    std::cerr << prompt << '\n';
    ++count;
    return host::Answer::no;
  }
  int count = 0;
};

void judgeLines() {
  ImExRequest request;
  request.DataOrigin("AGENT");
  request.DataType("PRODUCT");
  const Integer columns = request.tabCount();
  expect(columns > 1, "the request found the format's columns");
  const std::string good(static_cast<std::size_t>(int{columns}) - 1, '\t');
  expect(!request.simpleClientValidation("too short", 9, columns)->isEmpty(), "a short line is refused");
  expect(request.simpleClientValidation(good, 9, columns)->count() < 2, "a whole line is judged by its fields");
}

void catchErrors(host::Files& files) {
  expect(errorOf([&] { files.openForInput("/no/such/folder/file.txt"); }) == 76, "a missing folder is error 76");
  expect(errorOf([] { platform::IniFile("no setting", "a.ini"); }) == 5, "a bad INI file is error 5");
  expect(errorOf([] { host::required(host::services().clipboard); }) == 429, "a missing service is error 429");
}

} // namespace

int main(int argc, char** argv) {
  if (argc != 2)
    return 64;
  Directory directory(argv[1]);
  CountingBox box;
  platform::DiskFiles files;
  platform::SystemClock clock;
  host::Services services;
  services.application = &directory;
  services.messageBox = &box;
  services.files = &files;
  services.clock = &clock;
  host::install(services);

  ImExModule::initialize();
  expect(box.count == 0, "every format was read");
  for (const char* format : {"CUSTOMERAGENT", "CUSTOMERHALVIK", "PRODUCTAGENT", "BALLASTSHALVIK"}) {
    const StringsPtr columns = ImExModule::getFormatColumns(format);
    expect(columns && !columns->isEmpty(), format);
  }
  judgeLines();
  catchErrors(files);
  expect(clock.now().year > 2000, "the clock goes");
  return failures == 0 ? 0 : 1;
}
