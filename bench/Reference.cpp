#include "Reference.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <stdexcept>

namespace imex::bench {

namespace {

constexpr std::size_t kFields = 20;
constexpr std::size_t kLineLength = 200;
constexpr std::size_t kErrorTexts = 1000;
constexpr std::array kRequired = {2, 3, 6, 7, 8, 11, 13};

/// Numbers that are the same on every machine.
class Numbers {
 public:
  std::size_t below(std::size_t limit) {
    m_state = m_state * 6364136223846793005U + 1442695040888963407U;
    return static_cast<std::size_t>(m_state >> 33U) % limit;
  }

 private:
  std::uint64_t m_state = 20240703;
};

bool isRequired(std::size_t position) {
  return std::find(kRequired.begin(), kRequired.end(), static_cast<int>(position)) != kRequired.end();
}

std::string word(Numbers& numbers, std::size_t length) {
  constexpr std::string_view kLetters = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789 .,-";
  std::string text;
  while (text.size() < length)
    text += kLetters[numbers.below(kLetters.size() - 4 * (text.empty() ? 1 : 0))];
  return text;
}

/// The lengths of the fields, of which some that are not required are 0, and all of them fill the line.
std::array<std::size_t, kFields> lengths(Numbers& numbers) {
  std::array<std::size_t, kFields> result{};
  std::size_t rest = kLineLength - (kFields - 1);
  for (std::size_t i = 0; i < kFields; ++i) {
    const bool isEmpty = !isRequired(i + 1) && numbers.below(8) == 0;
    result[i] = isEmpty ? 0 : 3 + numbers.below(7);
    rest -= result[i];
  }
  result[1] += rest; // the firm's name takes what is left
  return result;
}

std::string makeLine(Numbers& numbers, bool withAccents) {
  std::array<std::size_t, kFields> sizes = lengths(numbers);
  std::string line;
  for (std::size_t i = 0; i < kFields; ++i) {
    if (i != 0)
      line += '\t';
    line += word(numbers, sizes[i]);
  }
  const std::size_t name = line.find('\t') + 1;
  const std::size_t chance = numbers.below(200);
  if (chance < 2)
    line[name + 1] = chance == 0 ? '&' : '<';
  if (withAccents && numbers.below(100) == 0)
    line.replace(name + 1, 2, "\xC3\xA9");
  return line;
}

void appendEscaped(std::string& xml, std::string_view text) {
  for (const char c : text) {
    if (c == '&')
      xml += "&amp;";
    else if (c == '<')
      xml += "&lt;";
    else
      xml += c;
  }
}

/// One record; `text` is the text of its error, empty for none.
void appendRecord(std::string& xml, std::string_view line, std::size_t number, std::string_view text) {
  xml.append("<item><isIuccessful>").append(text.empty() ? "true" : "false").append("</isIuccessful><line>");
  appendEscaped(xml, line);
  xml.append("</line><lineNumber>").append(std::to_string(number)).append("</lineNumber><errors>");
  if (!text.empty())
    xml.append("<item>").append(text).append("</item>");
  xml.append("</errors><warnings></warnings></item>");
}

} // namespace

Reference::Reference(std::size_t lineCount, bool withAccents) {
  Numbers numbers;
  file.reserve(lineCount * (kLineLength + 2));
  for (std::size_t i = 0; i < lineCount; ++i) {
    const std::string line = makeLine(numbers, withAccents);
    file.append(line).append("\r\n");
    lines.push_back(std::string_view(file).substr(file.size() - 2 - line.size(), line.size()));
  }
  answer = R"(<?xml version="1.0" encoding="UTF-8"?>)"
           "\n"
           R"(<SOAP-ENV:Envelope xmlns:SOAP-ENV="http://schemas.xmlsoap.org/soap/envelope/"><SOAP-ENV:Body>)"
           R"(<ns1:importDataResponse xmlns:ns1="urn:ImportExportService"><return><reply>Some lines failed.</reply>)"
           "<hasErrors>true</hasErrors><hasWarnings>false</hasWarnings><importExportResultBean>";
  const std::size_t texts = std::min(kErrorTexts, lineCount);
  for (std::size_t i = 0; i < lineCount; ++i) {
    const bool hasText = (i + 1) * texts / lineCount != i * texts / lineCount;
    appendRecord(answer, lines[i], i + 1, hasText ? "The customer type is not one that is known to the service." : "");
    errorTexts += hasText ? 1 : 0;
  }
  answer += "</importExportResultBean></return></ns1:importDataResponse></SOAP-ENV:Body></SOAP-ENV:Envelope>\n";
}

const std::string& Reference::folder() {
  static const std::string path = [] {
    const char* given = std::getenv("IMEX_BENCH_FOLDER");
    const std::filesystem::path made =
        given != nullptr ? std::filesystem::path(given) : std::filesystem::temp_directory_path() / "imex-bench";
    std::filesystem::create_directories(made);
    return (made / "").string();
  }();
  return path;
}

std::string Reference::write(const std::string& name, std::string_view bytes) {
  std::ofstream stream(folder() + name, std::ios::binary);
  stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  stream.close();
  if (!stream)
    throw std::runtime_error("cannot write " + folder() + name);
  return folder() + name;
}

const Reference& Reference::of(std::size_t lineCount) {
  static std::map<std::size_t, std::unique_ptr<Reference>> made;
  std::unique_ptr<Reference>& reference = made[lineCount];
  if (!reference) {
    reference = std::make_unique<Reference>(lineCount);
    reference->path = write("reference" + std::to_string(lineCount) + ".txt", reference->file);
  }
  return *reference;
}

} // namespace imex::bench
