#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace imex::desk {

/// A setting as platform::IniFile reads it. No text holds a line end.
struct IniSetting {
  std::string section;
  std::string key;
  std::string value;
};

/// The text of an INI file with these settings set. Everything else in it stays: comments, other settings, the order.
/// A setting that is there already is changed in its place, another one goes to the end of its section. A line that is
/// neither a comment, nor a section, nor a setting becomes a comment, so that the file can be read again.
std::string withSettings(std::string_view text, const std::vector<IniSetting>& settings);

} // namespace imex::desk
