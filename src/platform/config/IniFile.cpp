#include "platform/config/IniFile.h"

#include "runtime/RuntimeError.h"
#include "runtime/encoding.h"
#include "runtime/text.h"

#include <array>
#include <utility>

namespace imex::platform {

namespace {

std::string_view unquoted(std::string_view value) {
  const bool isQuoted = value.size() >= 2 && value.front() == '"' && value.back() == '"';
  return isQuoted ? value.substr(1, value.size() - 2) : value;
}

std::string nameOf(std::string_view section, std::string_view key) {
  return upperCase(section) + '\n' + upperCase(key);
}

[[noreturn]] void raiseAt(const std::string& path, int lineNumber, const std::string& what) {
  throw RuntimeError(static_cast<std::int32_t>(ErrorNumber::invalidProcedureCall), "IniFile",
                     path + ", line " + std::to_string(lineNumber) + ": " + what);
}

std::string readAll(ByteSource& source) {
  std::string text;
  std::array<char, 4096> buffer; // NOLINT: filled by read()
  while (const std::size_t count = source.read(buffer.data(), buffer.size()))
    text.append(buffer.data(), count);
  return text;
}

/// The bytes as text: Windows-1252 where they are no UTF-8, as import files are read.
std::string decoded(std::string bytes) {
  Utf8Validator validator;
  if (validator.feed(bytes) && validator.isComplete())
    return bytes;
  std::string text;
  appendWindows1252(text, bytes);
  return text;
}

} // namespace

IniFile::IniFile(std::string_view text, const std::string& path) {
  if (text.starts_with("\xEF\xBB\xBF"))
    text.remove_prefix(3);
  std::string section;
  for (int number = 1; !text.empty(); ++number) {
    const std::size_t end = text.find('\n');
    const std::string_view line = trimmed(text.substr(0, end));
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    if (line.empty() || line.front() == ';' || line.front() == '#')
      continue;
    if (line.front() == '[') {
      if (line.back() != ']')
        raiseAt(path, number, "a section must end in \"]\"");
      section = trimmed(line.substr(1, line.size() - 2));
      continue;
    }
    const std::size_t equals = line.find('=');
    const std::string_view key = trimmed(line.substr(0, equals));
    if (equals == std::string_view::npos || key.empty())
      raiseAt(path, number, "neither a [section] nor a key = value");
    m_values[nameOf(section, key)] = unquoted(trimmed(line.substr(equals + 1)));
  }
}

IniFile IniFile::read(host::Files& files, const std::string& path) {
  try {
    return {decoded(readAll(*files.openForInput(path))), path};
  } catch (const RuntimeError& error) {
    if (error.source() == "IniFile")
      throw;
    throw RuntimeError(error.number(), error.source(), path + ": " + error.description());
  }
}

std::optional<std::string> IniFile::value(std::string_view section, std::string_view key) const {
  const auto found = m_values.find(nameOf(section, key));
  if (found == m_values.end())
    return std::nullopt;
  return found->second;
}

} // namespace imex::platform
