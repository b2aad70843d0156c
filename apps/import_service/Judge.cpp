#include "import_service/Judge.h"

#include "import_service/wording.h"
#include "runtime/numbers.h"
#include "runtime/text.h"

#include <algorithm>

namespace imex::import_service {

namespace {

bool isBlank(std::string_view text) {
  return text.find_first_not_of(" \t") == std::string_view::npos;
}

std::vector<std::string_view> split(std::string_view line, char delimiter) {
  std::vector<std::string_view> fields;
  for (;;) {
    const std::size_t end = line.find(delimiter);
    fields.push_back(line.substr(0, end));
    if (end == std::string_view::npos)
      return fields;
    line.remove_prefix(end + 1);
  }
}

/// The first `count` characters.
std::string_view head(std::string_view text, std::size_t count) {
  std::size_t end = 0;
  for (; count > 0 && end < text.size(); --count)
    end += codePointAt(text, end).bytes;
  return text.substr(0, end);
}

} // namespace

Verdict Judge::judge(std::string_view line) {
  ++m_lineNumber;
  Verdict verdict;
  // Counted before it is split: a line of delimiters alone would take many times its size.
  const auto fields = static_cast<std::size_t>(std::count(line.begin(), line.end(), m_rules.delimiter)) + 1;
  if (fields != m_format.size()) {
    verdict.errors.push_back("The line has " + counted(fields, "field") + " where " + std::to_string(m_format.size()) +
                             " are expected.");
    return verdict;
  }
  verdict.fields = split(line, m_rules.delimiter);
  for (std::size_t column = 0; column < m_format.size(); ++column)
    judgeField(column, verdict);
  judgeKey(verdict);
  return verdict;
}

void Judge::judgeField(std::size_t column, Verdict& verdict) const {
  judgeLength(column, verdict);
  const Column& rule = m_format[column];
  const std::string_view value = verdict.fields[column];
  if (isBlank(value)) {
    if (rule.isRequired)
      verdict.errors.push_back(rule.name + " is required but is empty.");
  } else if (rule.isNumeric && !isNumeric(value)) {
    verdict.errors.push_back(rule.name + " must be a number, not " + inQuotes(value) + ".");
  }
}

void Judge::judgeLength(std::size_t column, Verdict& verdict) const {
  const Column& rule = m_format[column];
  const std::string_view value = verdict.fields[column];
  // No text has more characters than bytes, so most need not be counted.
  const std::size_t characters = value.size() <= rule.maxLength ? value.size() : length(value);
  if (characters <= rule.maxLength)
    return;
  const std::string has = std::to_string(characters);
  const std::string may = std::to_string(rule.maxLength);
  if (m_rules.allowTruncation) {
    verdict.fields[column] = head(value, rule.maxLength);
    verdict.warnings.push_back(rule.name + " is cut from " + has + " to " + may + " characters: " + inQuotes(value) +
                               ".");
  } else {
    verdict.errors.push_back(rule.name + " is too long, " + has + " characters where " + may +
                             " are allowed: " + inQuotes(value) + ".");
  }
}

void Judge::judgeKey(Verdict& verdict) {
  verdict.key = keyOf(verdict);
  if (verdict.key.empty())
    return;
  const auto [place, isNew] = m_lineOfKey.try_emplace(verdict.key, m_lineNumber);
  if (!isNew)
    verdict.errors.push_back("The record with " + describeKey(verdict) + " is already on line " +
                             std::to_string(place->second) + ".");
}

void Judge::warnOfStoredRow(Verdict& verdict) const {
  verdict.warnings.push_back("The record with " + describeKey(verdict) + " is already stored and will be updated.");
}

std::string Judge::keyOf(const Verdict& verdict) const {
  std::vector<std::string_view> parts;
  for (std::size_t column = 0; column < m_format.size(); ++column) {
    if (!m_format[column].isKey)
      continue;
    if (isBlank(verdict.fields[column]))
      return {};
    parts.push_back(verdict.fields[column]);
  }
  return jsonArray(parts);
}

std::string Judge::describeKey(const Verdict& verdict) const {
  std::vector<std::string> parts;
  for (std::size_t column = 0; column < m_format.size(); ++column)
    if (m_format[column].isKey)
      parts.push_back(m_format[column].name + ' ' + inQuotes(verdict.fields[column]));
  return listed(parts);
}

} // namespace imex::import_service
