#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace imex::bench {

/// The reference data: a file of customers in the agent's layout, and the service's answer to it. The same number of
/// lines always gives the same bytes.
///
/// A line has 20 fields separated by tabs and 200 characters, and ends with CR LF. All seven required fields are
/// filled; about one in eight of the others is empty. One line in a hundred holds "&" or "<", and one in a hundred
/// has a lower-case letter with an accent where `withAccents` is set. The answer has one record for each line, of
/// which every 32nd or so has one of 1,000 error texts.
struct Reference {
  explicit Reference(std::size_t lineCount, bool withAccents = false);

  /// Writes `bytes` to the file `name` in the folder of the benchmarks and returns its path.
  static std::string write(const std::string& name, std::string_view bytes);
  /// The folder, made when it is first asked for, with a separator at its end.
  static const std::string& folder();

  /// The one that a run uses for this number of lines, with its file written.
  static const Reference& of(std::size_t lineCount);

  std::string file;                    ///< the bytes of the import file
  std::vector<std::string_view> lines; ///< its lines, without their ends
  std::string answer;                  ///< the body of the answer
  std::string path;                    ///< where the file is, for one that of() gave
  std::size_t errorTexts = 0;
};

} // namespace imex::bench
