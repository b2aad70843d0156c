#pragma once

#include <ostream>
#include <streambuf>

namespace imex::cli {

/// Makes control characters visible in what goes out through a stream while the object lives: names of files and
/// answers of a service may hold sequences that a terminal obeys. Each becomes its number in hexadecimal ("\x1b");
/// tabs and line ends, LF and CR LF, stay. UTF-8 passes, but for its control characters U+0080 to U+009F.
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
  bool put(unsigned char byte);
  bool flushHeld();

  std::ostream& m_stream;
  std::streambuf* m_next;
  int m_held = kNothing; ///< a byte whose meaning the next one decides

  static constexpr int kNothing = -1;
};

} // namespace imex::cli
