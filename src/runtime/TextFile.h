#pragma once

#include "runtime/ByteStream.h"
#include "runtime/encoding.h"
#include "runtime/export.h"
#include "runtime/text.h"

#include <cstddef>
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace imex {

/// Reads text line by line. A line ends at CR LF or at the end of the bytes; a lone CR or LF is part of its line.
///
/// The encoding depends on all of the bytes, but ASCII is the same in each of them. So the bytes are read once as long
/// as they are ASCII; at the first other character the reader looks ahead to the end of the source, and then comes
/// back to where it was. Memory is one buffer, a second one while it looks ahead, and the longest line where a line
/// does not fit into the buffer.
class IMEX_EXPORT TextReader {
 public:
  /// Looks for the UTF-8 mark. Errors of the source pass through.
  explicit TextReader(std::unique_ptr<ByteSource> source);

  /// The encoding of the whole source. It looks ahead where the lines read so far do not tell; errors of the source
  /// pass through.
  Encoding encoding();

  /// Sets `line` to the next line in UTF-8, without its end, and returns true; returns false at the end. The text
  /// stays valid until the next call. Errors of the source pass through; the reader is then of no further use.
  bool readLine(std::string_view& line) {
    // Most lines lie in the buffer with their end. ASCII so far is ASCII in any encoding.
    return (m_encoding != Encoding::windows1252 && takeWholeLine(line)) || readOtherLine(line);
  }

 private:
  bool hasMark();
  bool fill();
  void judge(std::string_view bytes);
  void findEncoding(std::string_view bytes);
  void skip(std::size_t count);
  std::optional<std::size_t> findLineEnd(std::size_t& searched) const;
  void makeRoom(std::size_t& searched);
  bool readOtherLine(std::string_view& line);
  bool takeWholeLine(std::string_view& raw);
  bool takeLine(std::string_view& raw);

  std::unique_ptr<ByteSource> m_source;
  std::vector<char> m_buffer;
  std::size_t m_begin = 0; ///< the bytes not yet taken lie at m_begin..m_end of the buffer
  std::size_t m_end = 0;
  std::size_t m_read = 0;             ///< how many bytes of the source were read
  std::string m_long;                 ///< a line that did not fit into the buffer
  std::string m_decoded;              ///< a line of a Windows-1252 file
  std::optional<Encoding> m_encoding; ///< empty as long as all bytes read are ASCII
};

/// Takes a line that lies in the buffer with its end and has no other carriage return, as nearly all do.
inline bool TextReader::takeWholeLine(std::string_view& raw) {
  const char* const begin = m_buffer.data() + m_begin;
  const std::size_t size = m_end - m_begin;
  const void* const found = size < kLineBreak.size() ? nullptr : std::memchr(begin, '\r', size - 1);
  if (found == nullptr || static_cast<const char*>(found)[1] != '\n')
    return false;
  raw = {begin, static_cast<std::size_t>(static_cast<const char*>(found) - begin)};
  m_begin += raw.size() + kLineBreak.size();
  return true;
}

/// Writes text, and ends lines by CR LF.
class IMEX_EXPORT TextWriter {
 public:
  /// Writes the mark first where the encoding has one.
  explicit TextWriter(std::unique_ptr<ByteSink> sink, Encoding encoding = Encoding::utf8);
  /// Writes what is left and closes; an error of that is lost, so a caller that cares calls close().
  ~TextWriter();
  TextWriter(const TextWriter&) = delete;
  TextWriter& operator=(const TextWriter&) = delete;

  /// Writes text, of whole characters. Error 5 for one that the encoding lacks, and the errors of the sink.
  void write(std::string_view text);

  /// Writes text and the end of its line, with the same errors.
  void writeLine(std::string_view text);

  /// Writes what is left and closes. A second call does nothing.
  void close();

 private:
  void flush();

  std::unique_ptr<ByteSink> m_sink;
  std::string m_buffer;
  Encoding m_encoding;
};

} // namespace imex
