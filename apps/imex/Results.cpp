#include "Results.h"

#include <nlohmann/json.hpp>

#include <iostream>

namespace imex::cli {

namespace {

using Json = nlohmann::ordered_json;

Json orNull(const std::optional<std::string>& text) {
  return text ? Json(*text) : Json(nullptr);
}

/// The text on one line of the output and the rest of it below, indented.
std::string indented(const std::string& text) {
  std::string result;
  for (const char c : text) {
    if (c == '\r')
      continue;
    result += c;
    if (c == '\n')
      result += "             ";
  }
  return result;
}

void appendTexts(std::string& output, std::string_view label, const std::vector<std::string>& texts) {
  for (const std::string& text : texts)
    output.append("  ").append(label).append(indented(text)).append("\n");
}

/// A line that did not get in although nothing is wrong with it shared a file with one that has something.
const char* verdictOn(const LineResult& line) {
  if (line.successful)
    return "accepted";
  return line.errors.empty() && line.warnings.empty() ? "not imported" : "failed";
}

} // namespace

void printJson(const Results& results) {
  Json lines = Json::array();
  for (const LineResult& line : results.lines)
    lines.push_back(
        {{"line", line.line}, {"successful", line.successful}, {"errors", line.errors}, {"warnings", line.warnings}});
  const Json object = {{"outcome", results.outcome},
                       {"reply", orNull(results.reply)},
                       {"report", orNull(results.report)},
                       {"lines", std::move(lines)}};
  std::cout << object.dump(2, ' ', false, Json::error_handler_t::replace) << '\n';
}

void printText(const Results& results) {
  std::string verdicts;
  for (const LineResult& line : results.lines) {
    verdicts.append("Line ").append(std::to_string(line.line)).append(": ").append(verdictOn(line)).append("\n");
    appendTexts(verdicts, "Error:     ", line.errors);
    appendTexts(verdicts, "Warning:   ", line.warnings);
  }
  std::cout << verdicts;
  if (results.reply)
    std::cout << "Reply:   " << *results.reply << '\n';
  std::cout << "Outcome: " << results.outcome << '\n';
  if (results.report)
    std::cout << "Report:  " << *results.report << '\n';
}

} // namespace imex::cli
