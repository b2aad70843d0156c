#include "Results.h"

#include "jsonText.h"

#include <nlohmann/json.hpp>

#include <iostream>
#include <string_view>

namespace imex::cli {

namespace {

using Json = nlohmann::ordered_json;

constexpr std::string_view kReply = "Reply:   ";
constexpr std::string_view kReport = "Report:  ";

Json orNull(const std::optional<std::string>& text) {
  return text ? Json(*text) : Json(nullptr);
}

void appendTexts(std::string& output, std::string_view label, const std::vector<std::string>& texts) {
  for (const std::string& text : texts)
    output.append(label).append(indented(text, label.size())).append("\n");
}

/// A line that did not get in although nothing is wrong with it shared a file with one that has something.
const char* verdictOn(const LineResult& line) {
  if (line.successful)
    return "accepted";
  return line.errors.empty() && line.warnings.empty() ? "not imported" : "failed";
}

} // namespace

std::string indented(const std::string& text, std::size_t width) {
  std::string result;
  for (const char c : text) {
    if (c == '\r')
      continue;
    result += c;
    if (c == '\n')
      result.append(width, ' ');
  }
  return result;
}

void printJson(const Results& results) {
  Json lines = Json::array();
  for (const LineResult& line : results.lines)
    lines.push_back(
        {{"line", line.line}, {"successful", line.successful}, {"errors", line.errors}, {"warnings", line.warnings}});
  const Json object = {{"outcome", results.outcome},
                       {"reply", orNull(results.reply)},
                       {"report", orNull(results.report)},
                       {"lines", std::move(lines)}};
  std::cout << jsonText(object);
}

void printText(const Results& results) {
  std::string verdicts;
  for (const LineResult& line : results.lines) {
    verdicts.append("Line ").append(std::to_string(line.line)).append(": ").append(verdictOn(line)).append("\n");
    appendTexts(verdicts, "  Error:     ", line.errors);
    appendTexts(verdicts, "  Warning:   ", line.warnings);
  }
  std::cout << verdicts;
  if (results.reply)
    std::cout << kReply << indented(*results.reply, kReply.size()) << '\n';
  std::cout << "Outcome: " << results.outcome << '\n';
  if (results.report)
    std::cout << kReport << indented(*results.report, kReport.size()) << '\n';
}

} // namespace imex::cli
