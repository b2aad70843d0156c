#pragma once

#include "runtime/TextFile.h"
#include "runtime/export.h"

#include <functional>
#include <map>
#include <memory>

namespace imex {

/// The open text files of the process, each under a number from 1 to 511. A number in use cannot be taken again.
class IMEX_EXPORT FileNumbers {
 public:
  /// What opens a file to read; it raises the errors of host::Files.
  using OpenSource = std::function<std::unique_ptr<ByteSource>()>;
  /// The same for a file to write.
  using OpenSink = std::function<std::unique_ptr<ByteSink>()>;

  /// The lowest number that is not in use. Error 67, "Too many files", where all are.
  int freeNumber() const;

  /// Opens a file for reading under `number`. Error 55 where the number is in use (nothing is opened then); errors of
  /// `open` pass through and leave the number free. The reader is valid until the number is closed.
  TextReader& openForInput(int number, const OpenSource& open);

  /// The same for writing.
  TextWriter& openForOutput(int number, const OpenSink& open, Encoding encoding);

  /// Closes the file under `number`; nothing happens where there is none. For a file that was written, the error of
  /// the closing passes through and the number is free all the same.
  void close(int number);

  /// Closes every file and frees every number; errors of the closing are lost.
  void closeAll();

  /// Whether the number is in use.
  bool isOpen(int number) const { return m_readers.contains(number) || m_writers.contains(number); }

 private:
  void requireFree(int number) const;

  std::map<int, TextReader> m_readers;
  std::map<int, std::unique_ptr<TextWriter>> m_writers;
};

} // namespace imex
