#include "import_service/StoreUrl.h"

#include "import_service/ExitCode.h"
#include "import_service/wording.h"

namespace imex::import_service {

namespace {

constexpr std::string_view kSqlite = "sqlite://";

[[noreturn]] void refuse(std::string_view text, std::string_view why) {
  throw StartError(ExitCode::usage, "The store " + inQuotes(text) + ' ' + std::string(why) +
                                        "; give sqlite://PATH or sqlite://:memory:.");
}

} // namespace

StoreUrl StoreUrl::parse(std::string_view text) {
  if (!text.starts_with(kSqlite))
    refuse(text, "is of no database system that this program knows");
  const std::string_view path = text.substr(kSqlite.size());
  if (path.empty())
    refuse(text, "names no file");
  // The database library takes the path in double quotes and knows no way to escape one.
  if (path.find('"') != std::string_view::npos)
    refuse(text, "has a double quote in its path");
  return {System::sqlite, std::string(path)};
}

} // namespace imex::import_service
