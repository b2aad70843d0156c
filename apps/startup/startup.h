#pragma once

#include <string>

namespace imex {

// What every program does before it uses the component.

/// Lets numbers in files be read by the rules of the user's locale. Where the environment names an unknown one, those
/// of the classic locale hold.
void useLocaleOfUser();

/// A path of the command line or of the settings in full, because the component changes the current directory; without
/// a separator at its end. ".." stays: what it means behind a symbolic link, only the file system knows. Empty stays
/// empty.
std::string absolutePath(const std::string& path);

} // namespace imex
