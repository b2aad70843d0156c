#pragma once

#include "host/Files.h"
#include "runtime/Boolean.h"
#include "runtime/Collection.h"
#include "runtime/FileNumbers.h"
#include "runtime/Integer.h"
#include "runtime/export.h"

#include <string>
#include <string_view>

/// The process-wide module: the catalogue of the import file formats, the helpers for text and files that the rest
/// shares, and the way to the browser. The field validators are in module/validators.h.
namespace imex::ImExModule {

// --- Catalogue ------------------------------------------------------------------------------------------------------
// A format is known by its key, the data type followed by the data origin ("CUSTOMERAGENT"), in any case.

/// Makes the working directory the current one (or creates it) and reads the nine format files below the application
/// directory's "docs" folder. Does nothing once that has succeeded.
///
/// A file that cannot be read is named in a box. The formats before it stay known, it and those after it are unknown.
/// A second call after a failure begins anew with an empty catalogue but with the column counts of the first, and so
/// fails at once, at the first format whose count is there already.
IMEX_EXPORT void initialize();

/// The number of columns of a format; 0, silently, for an unknown key.
IMEX_EXPORT Integer getFormatColumnCount(std::string_view key);

/// Whether the format has a column count. An empty format file gives a known format of 0 columns.
IMEX_EXPORT bool isFormatCounted(std::string_view key);

/// The column names of a format, in file order; null, silently, for an unknown key. The list is the catalogue's own:
/// what a caller adds to it stays for the rest of the process, while the column count stays as loaded.
IMEX_EXPORT StringsPtr getFormatColumns(std::string_view key);

/// The folder of the component's temporary files, with a separator at its end; empty before initialize().
IMEX_EXPORT const std::string& workingDirectory();

// --- Text and files -------------------------------------------------------------------------------------------------

/// The fields of a line. The delimiter, the character with this code, always separates: n of them make n + 1 fields,
/// and an empty line is one empty field.
///
/// Positions are 16-bit, so a line of more than 32,767 characters raises error 6.
IMEX_EXPORT StringsPtr Parse(std::string_view line, Integer delimiterAscii);

/// Whether the file can be opened for reading, tried under file number 1. Any error, a taken number 1 included, is
/// false and nothing more.
IMEX_EXPORT Boolean checkFileExists(std::string_view fileName);

/// The open text files of the component.
IMEX_EXPORT FileNumbers& openFiles();

/// A text file that is read, closed when the object goes.
class IMEX_EXPORT InputFile {
 public:
  /// Opens `fileName` under `number`; with no number, under the lowest free one. Errors pass through.
  explicit InputFile(std::string_view fileName);
  InputFile(std::string_view fileName, int number);
  ~InputFile();
  InputFile(const InputFile&) = delete;
  InputFile& operator=(const InputFile&) = delete;

  /// As TextReader::readLine().
  bool readLine(std::string_view& line) { return m_reader.readLine(line); }

  /// As TextReader::encoding().
  Encoding encoding() { return m_reader.encoding(); }

 private:
  int m_number;
  TextReader& m_reader;
};

/// A text file that is written anew. Without a call of close() it is closed all the same, but an error of
/// the last bytes is lost.
class IMEX_EXPORT OutputFile {
 public:
  /// Creates `fileName`, or takes the one that is there to replace what is in it, under the lowest free number. Errors
  /// pass through.
  explicit OutputFile(std::string_view fileName, Encoding encoding = Encoding::utf8,
                      host::Owner owner = host::Owner::user);
  ~OutputFile();
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  /// As TextWriter::write(), writeLine() and close(). Nothing is written after close().
  void write(std::string_view text) { m_writer->write(text); }
  void writeLine(std::string_view text) { m_writer->writeLine(text); }
  void close();

 private:
  int m_number;
  TextWriter* m_writer; ///< null when closed
};

// --- Browser --------------------------------------------------------------------------------------------------------

/// Opens a finished page in the user's browser and returns at once. A failure is recorded and swallowed. The result is
/// always 0 and means nothing.
IMEX_EXPORT Integer launchInternetExplorer(const std::string& url);

} // namespace imex::ImExModule
