#include "harness/fuzz.h"
#include "platform/config/IniFile.h"

#include <string>

// Any text is settings or error 5 that names the file and a line. A value in quotes comes back as it was written.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace imex;
  const std::string text(fuzz::text(data, size));
  const auto settings = fuzz::unless({5}, [&] { return platform::IniFile(text, "settings"); });
  if (settings) {
    fuzz::require(settings->value("application", "directory") == settings->value("APPLICATION", "DIRECTORY"),
                  "case does not count");
  }
  if (text.find('\n') == std::string::npos) {
    const platform::IniFile quoted("[s]\nk = \"" + text + "\"\n", "settings");
    fuzz::require(quoted.value("S", "K") == text, "the value comes back");
  }
  return 0;
}
