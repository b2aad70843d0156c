#pragma once

#include "import_service/Formats.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace imex::import_service {

/// What the service says about one line. The fields are parts of the line and live as long as it.
struct Verdict {
  std::vector<std::string> errors;
  std::vector<std::string> warnings;
  std::vector<std::string_view> fields; ///< in column order, cut where that was allowed
  std::string key;                      ///< the key fields as a JSON array; empty where one of them is not filled

  bool hasErrors() const { return !errors.empty(); }
  bool hasWarnings() const { return !warnings.empty(); }
};

/// Judges the lines of one file, in their order. It touches nothing outside itself.
///
/// The texts are for the person who made the file: they name the column, the value (its first 40 characters) and the
/// limit.
class Judge {
 public:
  /// What the request allows.
  struct Rules {
    char delimiter = '\t';
    bool allowTruncation = false;
  };

  /// The format must outlive the judge.
  Judge(const Format& format, Rules rules) : m_format(format), m_rules(rules) {}

  /// The verdict on the next line, which is without a delimiter behind its last field.
  ///
  /// Errors: another number of fields than the format has columns (then nothing else is looked at); a required field
  /// that is empty or blank; more characters than the column takes, unless truncation is allowed; a numeric field that
  /// is filled with something else; a key that an earlier line of the file has. Warnings: a value that was cut.
  Verdict judge(std::string_view line);

  /// Adds the warning that the row of a line without errors is stored already.
  void warnOfStoredRow(Verdict& verdict) const;

 private:
  void judgeField(std::size_t column, Verdict& verdict) const;
  void judgeLength(std::size_t column, Verdict& verdict) const;
  void judgeKey(Verdict& verdict);
  std::string keyOf(const Verdict& verdict) const;
  std::string describeKey(const Verdict& verdict) const;

  const Format& m_format;
  Rules m_rules;
  std::size_t m_lineNumber = 0;
  std::unordered_map<std::string, std::size_t> m_lineOfKey;
};

} // namespace imex::import_service
