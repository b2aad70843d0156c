#pragma once

#include <filesystem>
#include <string>

namespace imex {

// What every program does before it uses the component.

/// Lets numbers in files be read by the rules of the user's locale, and UTF-8 appear as it is on a console. Where the
/// environment names an unknown locale, the rules of the classic one hold.
void useLocaleOfUser();

/// A path of the command line or of the settings in full, because the component changes the current directory; without
/// a separator at its end. ".." stays: what it means behind a symbolic link, only the file system knows. Empty stays
/// empty.
std::string absolutePath(const std::string& path);

/// The folder that the program's file is in.
std::filesystem::path programFolder();

/// The application directory that is installed with the programs, "../share/corvana" from their folder; empty where
/// there is none, as for a program in its build folder.
std::string installedDirectory();

/// The message of a command line that cannot be understood, with each argument that has an "@" as shownAddress() gives
/// it: an address with a password may have come at the wrong place.
std::string withoutPasswords(std::string message, int argc, const char* const* argv);

} // namespace imex
