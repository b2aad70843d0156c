#pragma once

#include <filesystem>
#include <string>

namespace imex {

// What every program does before it uses the component.

/// Takes the numbers of standard input, output and error where the caller has closed them, so that no file and no
/// connection of the program gets one and is written what is meant for a person. Writing to them then fails, as it does
/// while they are closed. To be called before anything is opened.
void keepStandardStreams();

/// Lets numbers in files be read by the rules of the user's locale, and UTF-8 appear as it is on a console. Where the
/// environment names an unknown locale, the rules of the classic one hold.
void useLocaleOfUser();

/// A path of the command line or of the settings in full, because the component changes the current directory; without
/// a separator at its end. ".." stays: what it means behind a symbolic link, only the file system knows. Empty stays
/// empty. Error 76, with a description that names the path, for a relative one where the current directory is gone.
std::string absolutePath(const std::string& path);

/// What the command-line parser says of wrong use, without the words of its own that only a programmer knows: "--config
/// needs a value".
std::string plainWords(const std::string& parserMessage);

/// The folder that the program's file is in.
std::filesystem::path programFolder();

/// The application directory that is installed with the programs, "../share/corvana" from their folder; empty where
/// there is none, as for a program in its build folder.
std::string installedDirectory();

/// The message of a command line that cannot be understood, with each argument that has an "@" as shownAddress() gives
/// it: an address with a password may have come at the wrong place.
std::string withoutPasswords(std::string message, int argc, const char* const* argv);

} // namespace imex
