#pragma once

#include "host/Files.h"
#include "runtime/export.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace imex::platform {

/// The settings of an INI file: "[section]" lines, "key = value" lines, comment lines that begin with ";" or "#", and
/// blank lines. Names of sections and keys are compared without case; blanks around names and values do not count; a
/// value in double quotes keeps the blanks inside them. A key that is given twice has its last value.
class IMEX_EXPORT IniFile {
 public:
  /// Nothing set.
  IniFile() = default;

  /// Reads the text of a file. A line that is none of the above raises error 5 with a description that names `path`
  /// and the line's number.
  IniFile(std::string_view text, const std::string& path);

  /// Reads the file. Errors of `files` are given a description that names the path.
  static IniFile read(host::Files& files, const std::string& path);

  /// The value, or nothing where it is not set. An empty value is set.
  std::optional<std::string> value(std::string_view section, std::string_view key) const;

 private:
  std::map<std::string, std::string> m_values; ///< by "SECTION\nKEY" in capitals
};

} // namespace imex::platform
