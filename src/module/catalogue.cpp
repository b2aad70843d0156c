#include "module/ImExModule.h"

#include "host/Application.h"
#include "host/Files.h"
#include "host/MessageBox.h"
#include "host/Services.h"
#include "module/state.h"
#include "module/tracing.h"

#include <array>
#include <memory>

namespace imex::ImExModule {

namespace {

constexpr std::string_view kSource = "ImExModule";
constexpr int kFormatFileNumber = 1;

struct FormatFile {
  std::string_view path; ///< below the application directory
  std::string_view key;
};

constexpr std::array<FormatFile, 9> kFormatFiles = {{
    {"\\docs\\formatagentcustomer.dat", "CUSTOMERAGENT"},
    {"\\docs\\formathalvikcustomer.dat", "CUSTOMERHALVIK"},
    {"\\docs\\formatagentproduct.dat", "PRODUCTAGENT"},
    {"\\docs\\formatagentproject.dat", "PROJECTLINEITEMAGENT"},
    {"\\docs\\formatagentquote.dat", "QUOTELINEITEMAGENT"},
    {"\\docs\\formatagentorder.dat", "ORDERLINEITEMAGENT"},
    {"\\docs\\formatagentinvoice.dat", "INVOICEAGENT"},
    {"\\docs\\formatagentcommission.dat", "COMMISSIONAGENT"},
    {"\\docs\\formathalvikballasts.dat", "BALLASTSHALVIK"},
}};

/// Runs one statement and goes on whatever happens to it.
template <class Statement>
bool succeeds(Statement&& statement) {
  try {
    statement();
    return true;
  } catch (...) {
    return false;
  }
}

/// Changes into the directory, or creates it where that fails; an error of either is left out of account. `path` ends
/// in a separator, which is dropped.
void makeWorkingDirectory(std::string_view path) {
  const std::string_view directory = path.substr(0, path.size() - 1);
  if (!succeeds([&] { host::required(host::services().files).changeDirectory(directory); }))
    succeeds([&] { host::required(host::services().files).makeDirectory(directory); });
}

/// Reads the column names of one format into the module's list for it. The list outlives a failure: the lines read
/// before it stay, and the next attempt adds to them.
Integer readColumns(State& state, const FormatFile& format, const std::string& path) {
  StringsPtr& columns = state.columnLists[std::string(format.key)];
  if (!columns)
    columns = std::make_shared<Strings>();
  Integer count;
  InputFile file(path, kFormatFileNumber);
  std::string_view line;
  while (file.readLine(line)) {
    if (line.empty())
      continue;
    columns->add(std::string(line));
    ++count;
  }
  return count;
}

void loadFormat(State& state, const FormatFile& format, std::string& path) {
  path = format.path; // names the file where its folder cannot be asked for
  path.insert(0, host::required(host::services().application).path());
  const Integer count = readColumns(state, format, path);
  state.formatCatalogue.add(state.columnLists[std::string(format.key)], format.key);
  state.columnLists.erase(std::string(format.key)); // the catalogue alone owns the list from here on
  state.formatColumnCounts.add(count, format.key);
}

void loadCatalogue(State& state, std::string& path) {
  state.workingDirectory = host::required(host::services().files).workingDirectory();
  makeWorkingDirectory(state.workingDirectory);
  state.formatCatalogue = {};
  for (const FormatFile& format : kFormatFiles)
    loadFormat(state, format, path);
  state.catalogueLoaded = true;
}

void reportFailure(const std::string& path, const CaughtError& error) {
  // The missing "to" is part of the text.
  const std::string prompt = "An error was encountered while attempting read dat file (" + path + ")." +
                             std::string(kLineBreak) +
                             "Some file types will not be editable. Please contact production support to have this "
                             "corrected.";
  ShowBox{prompt}(error);
}

} // namespace

State& state() {
  static State state;
  return state;
}

void initialize() {
  std::string path; // of the format file being read
  const Procedure procedure{kSource, "initialize"};
  guarded(
      procedure,
      [&] {
        try {
          betweenTraces(
              procedure, [] { return "initialize()"; },
              [&] {
                if (!state().catalogueLoaded)
                  loadCatalogue(state(), path);
              });
        } catch (...) {
          openFiles().closeAll();
          throw;
        }
      },
      [&](const CaughtError& error) { reportFailure(path, error); });
}

bool isFormatCounted(std::string_view key) {
  return state().formatColumnCounts.contains(key);
}

Integer getFormatColumnCount(std::string_view key) {
  return isFormatCounted(key) ? state().formatColumnCounts.item(key) : Integer();
}

StringsPtr getFormatColumns(std::string_view key) {
  return state().formatCatalogue.contains(key) ? state().formatCatalogue.item(key) : nullptr;
}

const std::string& workingDirectory() {
  return state().workingDirectory;
}

} // namespace imex::ImExModule
