#include "harness/MemoryHost.h"

#include "module/ImExModule.h"
#include "module/state.h"

#include <array>
#include <optional>
#include <utility>

namespace imex::fuzz {

namespace {

struct Format {
  std::string_view file;
  int columns;
};

constexpr std::array<Format, 9> kFormats = {{{"customer", 13},
                                             {"halvik", 5},
                                             {"product", 11},
                                             {"project", 10},
                                             {"quote", 10},
                                             {"order", 6},
                                             {"invoice", 4},
                                             {"commission", 3},
                                             {"ballasts", 2}}};

std::string pathOf(std::string_view file) {
  if (file == "ballasts")
    return "app\\docs\\formathalvikballasts.dat";
  return "app\\docs\\format" + (file == "halvik" ? "halvikcustomer" : "agent" + std::string(file)) + ".dat";
}

std::string names(int columns) {
  std::string text;
  for (int i = 1; i <= columns; ++i)
    text += "Field " + std::to_string(i) + "\r\n";
  return text;
}

constexpr std::array<std::string_view, 9> kKeys = {"CUSTOMERAGENT",        "CUSTOMERHALVIK",     "PRODUCTAGENT",
                                                   "PROJECTLINEITEMAGENT", "QUOTELINEITEMAGENT", "ORDERLINEITEMAGENT",
                                                   "INVOICEAGENT",         "COMMISSIONAGENT",    "BALLASTSHALVIK"};

Collection<StringsPtr> copyOf(const Collection<StringsPtr>& catalogue) {
  Collection<StringsPtr> copy;
  for (const std::string_view key : kKeys)
    copy.add(std::make_shared<Strings>(*catalogue.item(key)), key);
  return copy;
}

} // namespace

std::unique_ptr<ByteSource> MemoryFiles::openForInput(std::string_view path) {
  const auto found = files.find(path);
  if (found == files.end())
    throw RuntimeError(ErrorNumber::fileNotFound);
  return std::make_unique<test::MemorySource>(found->second);
}

std::unique_ptr<ByteSink> MemoryFiles::openForOutput(std::string_view path, host::Owner /*owner*/) {
  test::MemorySink::Record& record = written[std::string(path)];
  record = {};
  return std::make_unique<test::MemorySink>(record);
}

host::Answer BoxLines::show(std::string_view prompt, int style, std::string_view title) {
  lines.push_back(std::to_string(style) + ' ' + std::string(title) + ": " + std::string(prompt));
  return style == host::kQuestionStyle ? host::Answer::yes : host::Answer::ok;
}

void ErrorLines::LogError(std::string_view source, std::string_view procedure, const RuntimeError& error,
                          std::int32_t) {
  lines.push_back(std::string(source) + ' ' + std::string(procedure) + ' ' + std::to_string(error.number()) + ' ' +
                  error.description());
}

MemoryHost::MemoryHost() {
  services.application = &m_application;
  services.settings = &m_settings;
  services.currentUser = &m_user;
  services.messageBox = &boxes;
  services.files = &files;
  services.createTraceLog = [this] { return errors; };
  install();
}

MemoryHost::~MemoryHost() {
  host::install({});
}

void MemoryHost::loadCatalogue(std::string_view names) {
  for (const Format& format : kFormats)
    files.files[pathOf(format.file)] = names;
  ImExModule::state() = {};
  ImExModule::initialize();
}

void MemoryHost::loadCatalogue() {
  static std::optional<Collection<StringsPtr>> loaded; // reading nine files takes longer than most runs
  if (!loaded) {
    for (const Format& format : kFormats)
      files.files[pathOf(format.file)] = names(format.columns);
    ImExModule::state() = {};
    ImExModule::initialize();
    loaded = copyOf(ImExModule::state().formatCatalogue);
  }
  ImExModule::state().formatCatalogue = copyOf(*loaded); // without the columns that imports have added
}

} // namespace imex::fuzz
