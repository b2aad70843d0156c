#pragma once

#include <ostream>
#include <streambuf>
#include <string>

namespace imex::cli {

/// Makes hidden characters (hiddenCharacters.h) visible in what goes out through a stream while the object lives: names
/// of files and answers of a service may hold sequences that a terminal obeys. Each becomes its number in hexadecimal,
/// "\x1b" or "\u202e", and so does a byte that is no UTF-8, "\xff"; tabs and line ends, LF and CR LF, stay. What goes
/// out is valid UTF-8.
class VisibleControls : public std::streambuf {
 public:
  explicit VisibleControls(std::ostream& stream);
  ~VisibleControls() override;
  VisibleControls(const VisibleControls&) = delete;
  VisibleControls& operator=(const VisibleControls&) = delete;

 protected:
  int overflow(int byte) override;
  std::streamsize xsputn(const char* text, std::streamsize size) override;
  int sync() override;

 private:
  bool put(char byte);
  bool start(char byte);
  bool flushHeld();

  std::ostream& m_stream;
  std::streambuf* m_next;
  std::string m_held; ///< the beginning of a character, or CR, whose meaning the next byte decides
};

} // namespace imex::cli
