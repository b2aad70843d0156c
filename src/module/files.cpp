#include "module/ImExModule.h"

#include "host/Files.h"
#include "host/Services.h"
#include "module/state.h"
#include "module/tracing.h"

#include <string>
#include <utility>

namespace imex::ImExModule {

namespace {

constexpr std::string_view kSource = "ImExModule";
constexpr int kProbeNumber = 1;

} // namespace

FileNumbers& openFiles() {
  return state().files;
}

InputFile::InputFile(std::string_view fileName) : InputFile(fileName, openFiles().freeNumber()) {}

InputFile::InputFile(std::string_view fileName, int number)
    : m_number(number), m_reader(openFiles().openForInput(
                            number, [&] { return host::required(host::services().files).openForInput(fileName); })) {}

InputFile::~InputFile() {
  openFiles().close(m_number);
}

OutputFile::OutputFile(std::string_view fileName, Encoding encoding, host::Owner owner)
    : m_number(openFiles().freeNumber()),
      m_writer(&openFiles().openForOutput(
          m_number, [&] { return host::required(host::services().files).openForOutput(fileName, owner); }, encoding)) {}

OutputFile::~OutputFile() {
  try {
    close();
  } catch (...) { // a destructor has nobody to tell
  }
}

void OutputFile::close() {
  if (std::exchange(m_writer, nullptr) != nullptr)
    openFiles().close(m_number);
}

Boolean checkFileExists(std::string_view fileName) {
  const auto text = [&] { return "checkFileExists(fileName = " + std::string(fileName) + ")"; };
  try {
    betweenTraces({kSource, "checkFileExists"}, text, [&] { const InputFile file(fileName, kProbeNumber); });
    return true;
  } catch (...) { // a file that cannot be opened is an answer, so nothing is recorded
    return false;
  }
}

} // namespace imex::ImExModule
