#include "import_service/Formats.h"

#include "import_service/ExitCode.h"
#include "import_service/wording.h"
#include "platform/files/DiskFiles.h"
#include "runtime/RuntimeError.h"
#include "runtime/TextFile.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>

namespace imex::import_service {

namespace {

using Json = nlohmann::json;

constexpr std::size_t kLongestField = 32'767;

struct FormatFile {
  std::string_view key;
  std::string_view fileName;
};

/// The formats that are imported by lines, so those that the service needs.
constexpr std::array<FormatFile, 6> kImported{{
    {"CUSTOMERAGENT", "formatagentcustomer.dat"},
    {"CUSTOMERHALVIK", "formathalvikcustomer.dat"},
    {"PRODUCTAGENT", "formatagentproduct.dat"},
    {"INVOICEAGENT", "formatagentinvoice.dat"},
    {"COMMISSIONAGENT", "formatagentcommission.dat"},
    {"BALLASTSHALVIK", "formathalvikballasts.dat"},
}};

[[noreturn]] void refuse(const std::string& path, const std::string& what) {
  throw StartError(ExitCode::noInput, path + ": " + what);
}

/// The lines of a file; empty ones do not count.
std::vector<std::string> linesOf(const std::string& path) {
  try {
    platform::DiskFiles files;
    TextReader reader(files.openForInput(path));
    std::vector<std::string> lines;
    for (std::string_view line; reader.readLine(line);)
      if (!line.empty())
        lines.emplace_back(line);
    return lines;
  } catch (const RuntimeError& error) {
    refuse(path, error.description() + " (the application directory is the folder that holds docs)");
  }
}

Json jsonOf(const std::string& path) {
  std::string text;
  for (const std::string& line : linesOf(path))
    text += line + '\n';
  Json json = Json::parse(text, nullptr, false);
  if (json.is_discarded())
    refuse(path, "not valid JSON");
  if (!json.is_object())
    refuse(path, "not a JSON object");
  return json;
}

/// Reads the columns of one format from columns.json; a complaint names the place.
class ColumnReader {
 public:
  ColumnReader(const std::string& path, std::string_view key, const std::vector<std::string>& names)
      : m_path(path), m_key(key), m_names(names) {}

  Format read(const Json& json);

 private:
  Column readColumn(const Json& json);
  std::string name(const Json& json) const;
  std::size_t maxLength(const Json& json) const;
  bool flag(const Json& json, const char* name) const;
  [[noreturn]] void complain(const std::string& what) const;

  const std::string& m_path;
  std::string_view m_key;
  const std::vector<std::string>& m_names;
  std::size_t m_at = 0;
};

void ColumnReader::complain(const std::string& what) const {
  refuse(m_path, std::string(m_key) + ", column " + std::to_string(m_at + 1) + ": " + what);
}

std::string ColumnReader::name(const Json& json) const {
  const auto found = json.find("name");
  if (found == json.end() || !found->is_string())
    complain("\"name\" must be a text");
  auto name = found->get<std::string>();
  if (name != m_names[m_at])
    complain("the name is " + inQuotes(name) + ", but the format file has " + inQuotes(m_names[m_at]));
  return name;
}

std::size_t ColumnReader::maxLength(const Json& json) const {
  const auto found = json.find("maxLength");
  const std::size_t value = found != json.end() && found->is_number_unsigned() ? found->get<std::size_t>() : 0;
  if (value < 1 || value > kLongestField)
    complain("\"maxLength\" must be a whole number from 1 to " + std::to_string(kLongestField));
  return value;
}

bool ColumnReader::flag(const Json& json, const char* name) const {
  const auto found = json.find(name);
  if (found == json.end() || !found->is_boolean())
    complain(inQuotes(name) + " must be true or false");
  return found->get<bool>();
}

Column ColumnReader::readColumn(const Json& json) {
  if (!json.is_object())
    complain("not a JSON object");
  Column column{name(json), maxLength(json), flag(json, "required"), flag(json, "numeric"), flag(json, "key")};
  if (column.isKey && !column.isRequired)
    complain("a key column must be required");
  return column;
}

Format ColumnReader::read(const Json& json) {
  if (!json.is_array() || json.size() != m_names.size())
    refuse(m_path, std::string(m_key) + " must be an array of " + counted(m_names.size(), "column") +
                       ", as the format file has");
  Format format;
  for (m_at = 0; m_at < json.size(); ++m_at)
    format.push_back(readColumn(json[m_at]));
  if (std::none_of(format.begin(), format.end(), [](const Column& column) { return column.isKey; }))
    refuse(m_path, std::string(m_key) + " has no key column");
  return format;
}

} // namespace

Formats loadFormats(const std::string& applicationDirectory) {
  const std::string folder = applicationDirectory + "/docs/";
  const std::string path = folder + "columns.json";
  const Json json = jsonOf(path);
  Formats formats;
  for (const FormatFile& file : kImported) {
    const std::string key(file.key);
    const std::vector<std::string> names = linesOf(folder + std::string(file.fileName));
    if (!json.contains(key))
      refuse(path, key + " is missing");
    formats[key] = ColumnReader(path, key, names).read(json[key]);
  }
  return formats;
}

} // namespace imex::import_service
